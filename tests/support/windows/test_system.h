// SPDX-License-Identifier: MIT
// What tests ask of the system itself, on Windows. The Linux folder has the same for Linux.
#pragma once

#include <windows.h>
// After it.
#include <fcntl.h>
#include <io.h>
#include <unistd.h>
#include <xmmintrin.h>

#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

namespace zortest {

inline constexpr char list_separator = ';';
inline constexpr char path_separator = '\\';

// The system's environment can hold an empty value, the C runtime's copy of it cannot.
inline void remove_variable(const std::string& name) {
  _putenv((name + "=").c_str());
  SetEnvironmentVariableA(name.c_str(), nullptr);
}
inline void set_variable(const std::string& name, const std::string& value) {
  _putenv((name + "=" + value).c_str());
  SetEnvironmentVariableA(name.c_str(), value.c_str());
}
// Those that the library and its threading runtime look at: without some others no program can start here.
inline void remove_all_variables() {
  for (const char* name : {"OMP_NUM_THREADS", "OMP_PROC_BIND", "MKL_NPROCS", "ADL_ODT_OUT", "ReplayPurify",
                           "TAV_MAX_ALLOC", "TAV_REAL_MEMORY"}) {
    remove_variable(name);
  }
}

inline int process_number() {
  return static_cast<int>(GetCurrentProcessId());
}
inline std::string user_name() {
  char name[256] = "";
  DWORD length = sizeof name;
  return GetUserNameA(name, &length) != FALSE ? name : "UnknownUser";
}
inline std::string host_name() {
  char name[256] = "";
  DWORD length = sizeof name;
  GetComputerNameExA(ComputerNameDnsHostname, name, &length);
  return name;
}
inline std::uint64_t physical_memory() {
  MEMORYSTATUSEX memory{};
  memory.dwLength = sizeof memory;
  GlobalMemoryStatusEx(&memory);
  return memory.ullTotalPhys;
}
inline DWORD_PTR processor_mask() {
  DWORD_PTR of_process = 0;
  DWORD_PTR of_system = 0;
  GetProcessAffinityMask(GetCurrentProcess(), &of_process, &of_system);
  return of_process;
}
inline int processors() {
  return std::popcount(static_cast<std::uint64_t>(processor_mask()));
}
inline void keep_one_processor() {
  const DWORD_PTR mask = processor_mask();
  SetProcessAffinityMask(GetCurrentProcess(), mask & (~mask + 1));
}

inline double seconds(const FILETIME& t) {
  return static_cast<double>(static_cast<std::uint64_t>(t.dwHighDateTime) << 32 | t.dwLowDateTime) * 1e-7;
}
inline double process_seconds() {
  FILETIME t[4] = {};
  GetProcessTimes(GetCurrentProcess(), &t[0], &t[1], &t[2], &t[3]);
  return seconds(t[2]) + seconds(t[3]);
}
inline double thread_seconds() {
  FILETIME t[4] = {};
  GetThreadTimes(GetCurrentThread(), &t[0], &t[1], &t[2], &t[3]);
  return seconds(t[2]) + seconds(t[3]);
}
inline double seconds_since_start() {
  return static_cast<double>(GetTickCount64()) * 1e-3;
}

inline int descriptor_of(std::FILE* stream) {
  return _fileno(stream);
}
inline bool is_open(int descriptor) {
  return descriptor >= 0 && _get_osfhandle(descriptor) != -1;
}
inline bool is_inherited(int descriptor) {
  DWORD flags = 0;
  GetHandleInformation(reinterpret_cast<HANDLE>(_get_osfhandle(descriptor)), &flags);
  return (flags & HANDLE_FLAG_INHERIT) != 0;
}
inline bool make_pipe(int (&ends)[2]) {
  return _pipe(ends, 4096, _O_TEXT) == 0;
}
inline bool make_named_pipe(const std::string& /*path*/) {
  return false;
}
inline void wait_for_reader(std::FILE* /*stream*/) {
  Sleep(300);  // nothing here tells whether a stream is locked
}
inline void limit_seconds(unsigned seconds) {
  const auto end = [](void* argument) -> DWORD {
    Sleep(1000 * static_cast<DWORD>(reinterpret_cast<std::uintptr_t>(argument)));
    TerminateProcess(GetCurrentProcess(), 99);
    return 0;
  };
  CreateThread(nullptr, 0, end, reinterpret_cast<void*>(static_cast<std::uintptr_t>(seconds)), 0, nullptr);
}

constexpr unsigned all_masks = _MM_MASK_MASK;
inline void trap_divisions_by_zero() {
  _mm_setcsr(_mm_getcsr() & ~static_cast<unsigned>(_MM_MASK_DIV_ZERO));
}
inline void trap_everything() {
  _mm_setcsr(_mm_getcsr() & ~all_masks);
}
enum class Traps { none, division_by_zero, others };
inline Traps traps() {
  const unsigned unmasked = ~_mm_getcsr() & all_masks;
  return unmasked == 0 ? Traps::none : unmasked == _MM_MASK_DIV_ZERO ? Traps::division_by_zero : Traps::others;
}

inline void* load_library(const std::string& path) {
  return LoadLibraryA(path.c_str());
}
inline void* find_entry(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}
inline void release_library(void* library) {
  FreeLibrary(static_cast<HMODULE>(library));
}
inline bool is_library_loaded(const std::string& name) {
  return GetModuleHandleA((name + ".dll").c_str()) != nullptr;
}

inline HANDLE inherited_file(const std::string& path, DWORD access, DWORD creation) {
  SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
  return CreateFileA(path.c_str(), access, FILE_SHARE_READ, &inherit, creation, FILE_ATTRIBUTE_NORMAL, nullptr);
}

inline int run_program(const std::string& folder, const std::string& environment, const std::string& program,
                       const std::string& arguments, const std::string& out, const std::string& err) {
  std::string command = "\"" + program + "\" " + arguments;
  for (std::size_t at = 0; (at = command.find("''", at)) != std::string::npos; at += 2) {
    command.replace(at, 2, "\"\"");
  }
  std::vector<std::string> names;
  std::istringstream assignments(environment);
  for (std::string assignment; assignments >> assignment;) {
    names.push_back(assignment.substr(0, assignment.find('=')));
    set_variable(names.back(), assignment.substr(names.back().size() + 1));
  }
  STARTUPINFOA start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = inherited_file("NUL", GENERIC_READ, OPEN_EXISTING);
  start.hStdOutput = inherited_file(folder + "\\" + out, GENERIC_WRITE, CREATE_ALWAYS);
  start.hStdError = inherited_file(folder + "\\" + err, GENERIC_WRITE, CREATE_ALWAYS);
  PROCESS_INFORMATION child{};
  DWORD status = static_cast<DWORD>(-1);
  if (CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, folder.c_str(), &start, &child) !=
      FALSE) {
    WaitForSingleObject(child.hProcess, INFINITE);
    GetExitCodeProcess(child.hProcess, &status);
    CloseHandle(child.hProcess);
    CloseHandle(child.hThread);
  }
  for (const HANDLE handle : {start.hStdInput, start.hStdOutput, start.hStdError}) {
    CloseHandle(handle);
  }
  for (const std::string& name : names) {
    remove_variable(name);
  }
  return static_cast<int>(status);
}

inline bool run_with_stack(std::size_t bytes, std::function<void()> run) {
  const auto start = [](void* argument) -> DWORD {
    (*static_cast<std::function<void()>*>(argument))();
    return 0;
  };
  const HANDLE thread = CreateThread(nullptr, bytes, start, &run, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
  if (thread == nullptr) {
    return false;
  }
  WaitForSingleObject(thread, INFINITE);
  CloseHandle(thread);
  return true;
}

inline std::size_t stack_written_by(const std::function<void()>& run) {
  constexpr std::size_t size = 1024 * 1024;
  constexpr std::size_t guard = 64 * 1024;  // at the far end
  constexpr unsigned char paint = 0xA5;
  std::size_t written = 0;
  run_with_stack(size, [&run, &written] {
    ULONG_PTR low = 0;
    ULONG_PTR high = 0;
    GetCurrentThreadStackLimits(&low, &high);
    const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)) - 1024;
    // Downward: the system gives the stack its memory page by page.
    for (std::uintptr_t at = here; at > high - size + guard; --at) {
      *reinterpret_cast<volatile unsigned char*>(at) = paint;
    }
    run();
    std::uintptr_t at = high - size + guard + 1;
    while (at < here && *reinterpret_cast<volatile unsigned char*>(at) == paint) {
      ++at;
    }
    written = high - at;
  });
  return written;
}

}  // namespace zortest
