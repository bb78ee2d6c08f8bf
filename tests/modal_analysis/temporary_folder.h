// SPDX-License-Identifier: MIT
// A folder for one test, gone after it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/files.h"

namespace modaltest {

class TemporaryFolder : public testing::Test {
  const zortav::test::ScratchFolder scratch_;

 protected:
  std::string path(const std::string& name) const { return (folder_ / name).string(); }
  std::string write(const std::string& name, const std::string& text) const {
    zortav::test::write(path(name), text);
    return path(name);
  }
  std::string read(const std::string& name) const { return zortav::test::contents(path(name)); }

  const std::filesystem::path folder_{scratch_.path()};
};

}  // namespace modaltest
