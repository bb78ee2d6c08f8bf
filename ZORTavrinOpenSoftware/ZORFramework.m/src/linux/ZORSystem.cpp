// SPDX-License-Identifier: MIT
#include "ZORSystem.h"

#include <pwd.h>
#include <sys/resource.h>
#include <sys/sysinfo.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "ZORStatus.h"

const char* ZORGetEnv(const char* name) {
  return std::getenv(name);
}

int32_t ZORPutEnv(char* entry) {
  return putenv(entry);
}

int32_t ZORGetOperatingSystem([[maybe_unused]] int32_t option) {
  return ZOROperatingSystemTarget;
}

uint64_t ZORGetPhysicalMemory() {
  // Not sysconf: some C libraries answer it from /proc, which a container need not show.
  struct sysinfo machine {};
  return sysinfo(&machine) == 0 ? static_cast<uint64_t>(machine.totalram) * machine.mem_unit : 0;
}

ZORProcessHandle ZORGetCurrentProcess() {
  // A token, not the process number: it keeps its meaning in a child that inherits it.
  static char current_process;
  return &current_process;
}

int32_t ZORGetProcessTimes(ZORProcessHandle process, uint64_t* kernel, uint64_t* user) {
  *kernel = 0;
  *user = 0;
  rusage used{};
  if (process != ZORGetCurrentProcess() || getrusage(RUSAGE_SELF, &used) != 0) {
    return 1;
  }
  const auto hundred_nanoseconds = [](const timeval& t) {
    return static_cast<uint64_t>(t.tv_sec) * 10'000'000 + static_cast<uint64_t>(t.tv_usec) * 10;
  };
  *kernel = hundred_nanoseconds(used.ru_stime);
  *user = hundred_nanoseconds(used.ru_utime);
  return 0;
}

uint32_t ZORGetTickCount() {
  timespec since_start{};
  clock_gettime(CLOCK_BOOTTIME, &since_start);
  const uint64_t milliseconds =
      static_cast<uint64_t>(since_start.tv_sec) * 1000 + static_cast<uint64_t>(since_start.tv_nsec) / 1'000'000;
  return static_cast<uint32_t>(milliseconds);
}

void ZORGetLocalTime(struct tm* now) {
  *now = {};
  const std::time_t seconds = std::time(nullptr);
  // localtime_r alone need not look at a changed time zone.
  tzset();
  localtime_r(&seconds, now);
}

int32_t ZORGetLoginName(char* name, int32_t capacity) noexcept {
  *name = '\0';
  char texts[4096];
  passwd entry{};
  passwd* found = nullptr;
  // Not getlogin: a process without a terminal has a user all the same.
  if (getpwuid_r(getuid(), &entry, texts, sizeof texts, &found) != 0 || found == nullptr) {
    return E_FAIL;
  }
  std::snprintf(name, static_cast<size_t>(capacity), "%s", found->pw_name);
  return 0;
}

int32_t ZORGetSystemInfo(ZORSystemInfo* information) noexcept {
  *information = {};
  utsname machine{};
  if (uname(&machine) != 0) {
    return E_FAIL;
  }
  std::snprintf(information->host_name, sizeof information->host_name, "%s", machine.nodename);
  std::snprintf(information->operating_system, sizeof information->operating_system, "%s", machine.sysname);
  std::snprintf(information->release, sizeof information->release, "%s", machine.release);
  std::snprintf(information->machine, sizeof information->machine, "%s", machine.machine);
  return 0;
}
