// SPDX-License-Identifier: MIT
#include "services/catalog_folder.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include "ZORSystem.h"

namespace modal {
namespace {

namespace fs = std::filesystem;

constexpr const char* search_path_variable = "ZOR_MESSAGE_CATALOG_PATH";
constexpr char separator = fs::path::preferred_separator == '/' ? ':' : ';';

}  // namespace

void add_catalog_folder(const char* program) {
  std::error_code unknown;
  fs::path file = fs::read_symlink("/proc/self/exe", unknown);
  if (unknown) {
    file = program;
  }
  const char* const before = ZORGetEnv(search_path_variable);
  static std::string entry;  // the environment keeps pointing at it
  entry = std::string(search_path_variable) + '=' + (before != nullptr ? std::string(before) + separator : "") +
          (file.parent_path() / "msgcatalog").string();
  ZORPutEnv(entry.data());
}

}  // namespace modal
