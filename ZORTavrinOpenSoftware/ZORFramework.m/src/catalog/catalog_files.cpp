// SPDX-License-Identifier: MIT
#include "catalog_files.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <new>
#include <set>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "ZORSystem.h"
#include "platform.h"

namespace zortav {
namespace {

namespace fs = std::filesystem;

constexpr const char* search_path_variable = "ZOR_MESSAGE_CATALOG_PATH";
constexpr std::size_t largest_file = std::size_t{16} << 20;

fs::path from_utf8(const std::string& text) {
  return fs::path(std::u8string(text.begin(), text.end()));
}

// A name becomes part of a file name: it must not lead out of its folder.
bool is_plain_name(const std::string& name) {
  constexpr const char* plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-";
  return !name.empty() && name.find_first_not_of(plain) == std::string::npos;
}

std::vector<fs::path> folders(const std::string& search_path) {
  std::vector<fs::path> result;
  std::istringstream listed(search_path);
  for (std::string folder; std::getline(listed, folder, path_list_separator);) {
    if (!folder.empty()) {
      result.push_back(from_utf8(folder));
    }
  }
  const ZORUnicodeString own = library_folder();
  if (!own.IsEmpty()) {
    const fs::path library = from_utf8(own.GetText());
    result.push_back(library);
    result.push_back(library / "msgcatalog");
    // Under the prefix, whose libraries lie in lib or, on a system with several architectures, in a folder of lib.
    result.push_back(library / ".." / "share" / "ZORTAVMathKernel" / "msgcatalog");
    result.push_back(library / ".." / ".." / "share" / "ZORTAVMathKernel" / "msgcatalog");
  }
  return result;
}

std::string read_bytes(const fs::path& file) {
  std::string bytes(std::min<std::size_t>(fs::file_size(file), largest_file + 1), '\0');
  std::ifstream stream(file, std::ios::binary);
  stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!stream) {
    throw std::runtime_error("it cannot be read");
  }
  if (bytes.size() > largest_file) {
    throw std::runtime_error("it is larger than a catalog may be");
  }
  return bytes;
}

void report_once(const fs::path& file, const char* why) {
  static auto& reported = *new std::set<fs::path>;
  if (reported.insert(file).second) {
    std::fprintf(stderr, "message catalog %s is not used: %s\n", file.string().c_str(), why);
  }
}

}  // namespace

std::string catalog_search_path() {
  const char* const value = ZORGetEnv(search_path_variable);
  return value != nullptr ? value : "";
}

std::optional<MessageTable> read_catalog_file(const std::string& search_path, const std::string& catalog,
                                              const std::string& language) {
  if (!is_plain_name(catalog)) {
    return std::nullopt;
  }
  const std::string name = catalog + "_" + language + ".json";
  for (const fs::path& folder : folders(search_path)) {
    const fs::path file = folder / name;
    std::error_code unreachable;
    // Anything but a plain file could keep the reader waiting.
    if (!fs::is_regular_file(file, unreachable)) {
      continue;
    }
    try {
      return parse_messages(read_bytes(file));
    } catch (const std::bad_alloc&) {
      throw;  // not the file's fault: it is read again when there is memory
    } catch (const std::exception& e) {
      report_once(file, e.what());
    }
  }
  return std::nullopt;
}

}  // namespace zortav
