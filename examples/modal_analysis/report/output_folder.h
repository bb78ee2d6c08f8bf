// SPDX-License-Identifier: MIT
// A folder for result files, each of which appears complete or not at all.
#pragma once

#include <filesystem>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace modal {

class OutputFolder {
 public:
  // Makes the folder where it is missing. Throws InputError when files cannot be written there.
  explicit OutputFolder(const std::string& path);
  // Removes the files that were not published, and the folder again when it was made for nothing.
  ~OutputFolder();
  OutputFolder(const OutputFolder&) = delete;
  OutputFolder& operator=(const OutputFolder&) = delete;

  // Writes a file under a temporary name. Throws InputError when that fails, a full disk included.
  void write(const std::string& name, const std::function<void(std::ostream&)>& content);
  // Gives every file written since its own name, over an older file of that name.
  void publish();

 private:
  struct Pending {
    std::filesystem::path temporary;
    std::filesystem::path final;
  };
  [[noreturn]] void refuse(const std::filesystem::path& file) const;

  std::filesystem::path path_;
  std::string suffix_;
  std::filesystem::path made_;  // the topmost folder that the constructor made; empty when all were there
  std::vector<Pending> pending_;
};

}  // namespace modal
