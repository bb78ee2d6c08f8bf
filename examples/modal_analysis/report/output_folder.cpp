// SPDX-License-Identifier: MIT
#include "report/output_folder.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <system_error>

#include "structure/input_error.h"

namespace modal {
namespace fs = std::filesystem;
namespace {

// The topmost missing folder on the way to `path`.
fs::path first_missing(const fs::path& path) {
  std::error_code ignored;
  fs::path missing;
  for (fs::path p = path; !p.empty() && !fs::exists(p, ignored); p = p.parent_path()) {
    missing = p;
  }
  return missing;
}

// Removes the folders from `path` up to `topmost`. Removing one that holds something fails, which is what is wanted of
// a folder that has its results.
void remove_folders(const fs::path& path, const fs::path& topmost) {
  if (topmost.empty()) {
    return;
  }
  std::error_code ignored;
  fs::path folder = path;
  for (; folder != topmost; folder = folder.parent_path()) {
    fs::remove(folder, ignored);
  }
  fs::remove(folder, ignored);
}

}  // namespace

OutputFolder::OutputFolder(const std::string& path) : path_(path) {
  suffix_ = ".part" + std::to_string(std::random_device{}());  // two runs into one folder do not share it
  made_ = first_missing(path_);
  std::error_code error;
  fs::create_directories(path_, error);
  const fs::path probe = path_ / ("modes" + suffix_);
  if (!error) {
    std::ofstream(probe).close();
  }
  std::error_code ignored;
  const bool writable = !error && fs::exists(probe, ignored);
  fs::remove(probe, ignored);
  if (!writable) {
    remove_folders(path_, made_);
    throw InputError(path + ": files cannot be written in this folder");
  }
}

OutputFolder::~OutputFolder() {
  std::error_code ignored;
  for (const Pending& file : pending_) {
    fs::remove(file.temporary, ignored);
  }
  remove_folders(path_, made_);
}

void OutputFolder::write(const std::string& name, const std::function<void(std::ostream&)>& content) {
  pending_.push_back({path_ / (name + suffix_), path_ / name});
  std::ofstream file(pending_.back().temporary, std::ios::binary);
  content(file);
  file.close();
  if (!file) {
    refuse(pending_.back().final);
  }
}

void OutputFolder::publish() {
  while (!pending_.empty()) {
    std::error_code error;
    fs::rename(pending_.back().temporary, pending_.back().final, error);
    if (error) {
      refuse(pending_.back().final);
    }
    pending_.pop_back();
  }
}

void OutputFolder::refuse(const fs::path& file) const {
  throw InputError(file.string() + ": the file cannot be written");
}

}  // namespace modal
