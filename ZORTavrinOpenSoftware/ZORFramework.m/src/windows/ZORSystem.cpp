// SPDX-License-Identifier: MIT
#include "ZORSystem.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <forward_list>
#include <mutex>
#include <string>
#include <utility>

#include "ZORStatus.h"
#include "wide_text.h"

namespace {

// The longest value that Windows allows, its terminating zero included, in UTF-16 units.
constexpr DWORD longest_value = 32767;

// Texts that were handed out. They are never taken back, for a caller may still hold one: as many as there have been
// different values.
const char* keep(const std::string& text) {
  static auto& mutex = *new std::mutex;
  static auto& kept = *new std::forward_list<std::string>;
  const std::lock_guard<std::mutex> lock(mutex);
  for (const std::string& known : kept) {
    if (known == text) {
      return known.c_str();
    }
  }
  return kept.emplace_front(text).c_str();
}

}  // namespace

const char* ZORGetEnv(const char* name) {
  // Not the C runtime's copy: a process may have several runtimes, and their copies are in the old code pages.
  const std::wstring wide_name = zortav::wide(name);
  std::wstring value(longest_value, L'\0');
  SetLastError(ERROR_SUCCESS);
  const DWORD length = GetEnvironmentVariableW(wide_name.c_str(), value.data(), longest_value);
  if (length == 0 && GetLastError() == ERROR_ENVVAR_NOT_FOUND) {
    return nullptr;
  }
  value.resize(length);
  return keep(ZORUnicodeString::FromWide(value.c_str()).GetText());
}

int32_t ZORPutEnv(char* entry) {
  // The C runtime's copy and the system's, both at once.
  return _wputenv(zortav::wide(entry).c_str());
}

int32_t ZORGetOperatingSystem([[maybe_unused]] int32_t option) {
  return ZOROperatingSystemTarget;
}

uint64_t ZORGetPhysicalMemory() {
  MEMORYSTATUS memory{};
  memory.dwLength = sizeof memory;
  GlobalMemoryStatus(&memory);
  static_assert(sizeof memory.dwTotalPhys == sizeof(uint64_t), "a 32-bit count stops at 4 GiB");
  return memory.dwTotalPhys;
}

ZORProcessHandle ZORGetCurrentProcess() {
  return GetCurrentProcess();
}

int32_t ZORGetProcessTimes(ZORProcessHandle process, uint64_t* kernel, uint64_t* user) {
  *kernel = 0;
  *user = 0;
  FILETIME created{};
  FILETIME ended{};
  FILETIME in_kernel{};
  FILETIME in_user{};
  if (process != GetCurrentProcess() || GetProcessTimes(process, &created, &ended, &in_kernel, &in_user) == FALSE) {
    return 1;
  }
  const auto count = [](const FILETIME& t) { return static_cast<uint64_t>(t.dwHighDateTime) << 32 | t.dwLowDateTime; };
  *kernel = count(in_kernel);
  *user = count(in_user);
  return 0;
}

uint32_t ZORGetTickCount() {
  return GetTickCount();
}

void ZORGetLocalTime(struct tm* now) {
  *now = {};
  const __time64_t seconds = _time64(nullptr);
  // The runtime need not look at a changed time zone by itself.
  _tzset();
  // Its result belongs to the thread.
  if (const struct tm* const fields = _localtime64(&seconds)) {
    *now = *fields;
  }
}

int32_t ZORGetLoginName(char* name, int32_t capacity) noexcept {
  *name = '\0';
  constexpr DWORD longest_name = 257;  // with its terminating zero
  wchar_t wide_name[longest_name] = L"";
  DWORD length = longest_name;
  if (GetUserNameW(wide_name, &length) == FALSE) {
    return E_FAIL;
  }
  zortav::copy_to_fit(ZORUnicodeString::FromWide(wide_name), name, static_cast<size_t>(capacity));
  return 0;
}

int32_t ZORGetSystemInfo(ZORSystemInfo* information) noexcept {
  *information = {};
  wchar_t host[sizeof information->host_name] = L"";
  DWORD length = sizeof information->host_name;
  if (GetComputerNameExW(ComputerNameDnsHostname, host, &length) == FALSE) {
    return E_FAIL;
  }
  zortav::copy_to_fit(ZORUnicodeString::FromWide(host), information->host_name, sizeof information->host_name);
  std::snprintf(information->operating_system, sizeof information->operating_system, "Windows");
  std::snprintf(information->machine, sizeof information->machine, "x86_64");
  // GetVersionEx answers what the program's manifest says it knows, this function what is there.
  using GetVersion = LONG(WINAPI*)(OSVERSIONINFOW*);
  OSVERSIONINFOW version{};
  version.dwOSVersionInfoSize = sizeof version;
  void (*entry)() = reinterpret_cast<void (*)()>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion"));
  if (entry != nullptr && reinterpret_cast<GetVersion>(entry)(&version) == 0) {
    std::snprintf(information->release, sizeof information->release, "%lu.%lu.%lu", version.dwMajorVersion,
                  version.dwMinorVersion, version.dwBuildNumber);
  }
  return 0;
}
