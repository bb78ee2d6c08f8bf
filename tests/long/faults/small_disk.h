// SPDX-License-Identifier: MIT
// A file system of a few pages, that only this process and its children see.
#pragma once

#include <string>

#include "support/files.h"

namespace zortest {

class SmallDisk {
 public:
  // With room for so many bytes, rounded up to pages, and for so many files beside the folder itself.
  explicit SmallDisk(std::size_t bytes, int files = 100);
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  ~SmallDisk();

  // Why the system mounts none for us; empty where it does.
  static const std::string& refusal();

  std::string path() const { return folder_.path(); }
  std::string operator/(const std::string& name) const { return folder_ / name; }
  bool make_read_only() const;

 private:
  zortav::test::ScratchFolder folder_;
  bool is_there_ = false;
};

}  // namespace zortest
