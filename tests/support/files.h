// SPDX-License-Identifier: MIT
// What tests of files and of output need: a folder of their own, and what a call writes to a standard stream.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace zortav::test {

// A new empty folder, removed with all that is in it.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "zortav_XXXXXX").string();
    path_ = mkdtemp(name.data());
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  const std::filesystem::path& path() const { return path_; }
  std::string operator/(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

inline std::string contents(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
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
  const int saved = dup(fileno(stream));
  dup2(fileno(file), fileno(stream));
  run();
  std::fflush(stream);
  dup2(saved, fileno(stream));
  close(saved);
  std::fclose(file);
  return contents(name);
}

}  // namespace zortav::test
