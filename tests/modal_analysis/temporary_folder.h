// SPDX-License-Identifier: MIT
// A folder for one test, gone after it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "test_system.h"

namespace modaltest {

class TemporaryFolder : public testing::Test {
 protected:
  void SetUp() override {
    const std::string test = testing::UnitTest::GetInstance()->current_test_info()->name();
    folder_ = std::filesystem::temp_directory_path() / ("modal-" + test + std::to_string(zortest::process_number()));
    std::filesystem::create_directories(folder_);
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  std::string path(const std::string& name) const { return (folder_ / name).string(); }
  std::string write(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
  }
  std::string read(const std::string& name) const {
    std::ostringstream text;
    text << std::ifstream(path(name)).rdbuf();
    return text.str();
  }

  std::filesystem::path folder_;
};

}  // namespace modaltest
