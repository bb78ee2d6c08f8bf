// SPDX-License-Identifier: MIT
#include "platform.h"

#include <dlfcn.h>
#include <uuid/uuid.h>

#include <cstring>

const char zortav::path_list_separator = ':';

ZORUnicodeString zortav::library_folder() noexcept {
  Dl_info self{};
  const char* const last_separator = dladdr(&path_list_separator, &self) != 0 && self.dli_fname != nullptr
                                         ? std::strrchr(self.dli_fname, '/')
                                         : nullptr;
  if (last_separator == nullptr) {
    return {};
  }
  char folder_bytes[4096] = "";
  const auto length = static_cast<size_t>(last_separator - self.dli_fname);
  if (length < sizeof folder_bytes) {
    std::memcpy(folder_bytes, self.dli_fname, length);
  }
  return folder_bytes;
}

void zortav::generate_uuid(std::uint8_t (&bytes)[16]) noexcept {
  uuid_generate(bytes);
}
