// SPDX-License-Identifier: MIT
#include "platform.h"

#include <windows.h>
// After it.
#include <rpc.h>

#include <cstring>
#include <cwchar>

const char zortav::path_list_separator = ';';

namespace {

HMODULE own_module(DWORD flags) noexcept {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | flags,
                     reinterpret_cast<LPCWSTR>(&zortav::path_list_separator), &module);
  return module;
}

// The threads of a finished parallel region wait inside the library for the next one: once loaded, it stays.
[[maybe_unused]] const HMODULE stays_loaded = own_module(GET_MODULE_HANDLE_EX_FLAG_PIN);

}  // namespace

ZORUnicodeString zortav::library_folder() noexcept {
  constexpr DWORD longest_path = 4096;
  wchar_t path[longest_path];
  const DWORD length = GetModuleFileNameW(own_module(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT), path, longest_path);
  wchar_t* const last_separator = length > 0 && length < longest_path ? std::wcsrchr(path, L'\\') : nullptr;
  if (last_separator == nullptr) {
    return {};
  }
  *last_separator = L'\0';
  return ZORUnicodeString::FromWide(path);
}

void zortav::generate_uuid(std::uint8_t (&bytes)[16]) noexcept {
  UUID made{};
  UuidCreate(&made);
  // Three numbers, then bytes; the text form writes the numbers with their highest byte first.
  for (int i = 0; i < 4; ++i) {
    bytes[i] = static_cast<std::uint8_t>(made.Data1 >> (24 - 8 * i));
  }
  for (int i = 0; i < 2; ++i) {
    bytes[4 + i] = static_cast<std::uint8_t>(made.Data2 >> (8 - 8 * i));
    bytes[6 + i] = static_cast<std::uint8_t>(made.Data3 >> (8 - 8 * i));
  }
  std::memcpy(bytes + 8, made.Data4, sizeof made.Data4);
}
