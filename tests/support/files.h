// SPDX-License-Identifier: MIT
// What tests of files and of output need: a folder of their own, and what a call writes to a standard stream.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "ZORDescriptor.h"
#include "test_system.h"

namespace zortav::test {

// A new empty folder, removed with all that is in it.
class ScratchFolder {
 public:
  ScratchFolder() {
    static int made = 0;
    do {
      path_ = std::filesystem::temp_directory_path() /
              ("zortav_" + std::to_string(zortest::process_number()) + "_" + std::to_string(++made));
    } while (!std::filesystem::create_directory(path_));
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  std::string path() const { return path_.string(); }
  std::string operator/(const std::string& name) const { return (path_ / name).make_preferred().string(); }

 private:
  std::filesystem::path path_;
};

// As a text: on every platform a line ends with one character.
inline std::string contents(const std::string& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

inline void write(const std::string& file, const std::string& text) {
  std::filesystem::create_directories(std::filesystem::path(file).parent_path());
  std::ofstream(file, std::ios::binary) << text;
}

// What reaches the descriptor of the stream, stdout or stderr, while run() runs.
template <class Run>
std::string captured(std::FILE* stream, Run run) {
  std::fflush(stream);
  const ScratchFolder folder;
  const std::string name = folder / "captured";
  std::FILE* const file = std::fopen(name.c_str(), "w");
  const int saved = ZORDuplicateDescriptor(zortest::descriptor_of(stream));
  ZORReplaceDescriptor(zortest::descriptor_of(file), zortest::descriptor_of(stream));
  run();
  std::fflush(stream);
  ZORReplaceDescriptor(saved, zortest::descriptor_of(stream));
  ZORReleaseDescriptor(saved);
  std::fclose(file);
  return contents(name);
}

}  // namespace zortav::test
