// SPDX-License-Identifier: MIT
// What tests ask of the system itself, on Linux. The Windows folder has the same for Windows.
#pragma once

#include <dlfcn.h>
#include <fcntl.h>
#include <fenv.h>
#include <pthread.h>
#include <pwd.h>
#include <sched.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <string>

namespace zortest {

inline constexpr char list_separator = ':';
inline constexpr char path_separator = '/';

inline void set_variable(const std::string& name, const std::string& value) {
  setenv(name.c_str(), value.c_str(), 1);
}
inline void remove_variable(const std::string& name) {
  unsetenv(name.c_str());
}
inline void remove_all_variables() {
  clearenv();
}

inline int process_number() {
  return static_cast<int>(getpid());
}
inline std::string user_name() {
  const passwd* const user = getpwuid(getuid());
  return user != nullptr ? user->pw_name : "UnknownUser";
}
inline std::string host_name() {
  char host[256] = "";
  gethostname(host, sizeof host);
  return host;
}
inline std::uint64_t physical_memory() {
  return static_cast<std::uint64_t>(sysconf(_SC_PHYS_PAGES)) * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}
// The processors that the process may run on.
inline int processors() {
  cpu_set_t mask;
  return sched_getaffinity(0, sizeof mask, &mask) == 0 ? CPU_COUNT(&mask) : 0;
}
inline void keep_one_processor() {
  cpu_set_t mask;
  CPU_ZERO(&mask);
  CPU_SET(sched_getcpu(), &mask);
  sched_setaffinity(0, sizeof mask, &mask);
}

inline double seconds_of(clockid_t clock) {
  timespec t{};
  clock_gettime(clock, &t);
  return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}
inline double process_seconds() {
  return seconds_of(CLOCK_PROCESS_CPUTIME_ID);
}
inline double thread_seconds() {
  return seconds_of(CLOCK_THREAD_CPUTIME_ID);
}
inline double seconds_since_start() {
  return seconds_of(CLOCK_BOOTTIME);
}

inline int descriptor_of(std::FILE* stream) {
  return fileno(stream);
}
inline bool is_open(int descriptor) {
  return fcntl(descriptor, F_GETFD) != -1;
}
inline bool is_inherited(int descriptor) {
  return (fcntl(descriptor, F_GETFD) & FD_CLOEXEC) == 0;
}
inline bool make_pipe(int (&ends)[2]) {
  return pipe(ends) == 0;
}
// A pipe that has a name. False where the system has none among its files.
inline bool make_named_pipe(const std::string& path) {
  return mkfifo(path.c_str(), 0644) == 0;
}
// Waits until another thread, which is known to read from the stream soon, holds its lock.
inline void wait_for_reader(std::FILE* stream) {
  while (ftrylockfile(stream) == 0) {
    funlockfile(stream);
    sched_yield();
  }
}
// Ends the process by force after so many seconds.
inline void limit_seconds(unsigned seconds) {
  alarm(seconds);
}

inline void trap_divisions_by_zero() {
  feenableexcept(FE_DIVBYZERO);
}
inline void trap_everything() {
  feenableexcept(FE_ALL_EXCEPT);
}
enum class Traps { none, division_by_zero, others };
inline Traps traps() {
  return fegetexcept() == 0 ? Traps::none : fegetexcept() == FE_DIVBYZERO ? Traps::division_by_zero : Traps::others;
}

inline void* load_library(const std::string& path) {
  return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
}
inline void* find_entry(void* library, const char* name) {
  return dlsym(library, name);
}
inline void release_library(void* library) {
  dlclose(library);
}
// By its bare name, without prefix and suffix.
inline bool is_library_loaded(const std::string& name) {
  void* const library = dlopen(("lib" + name + ".so").c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (library != nullptr) {
    dlclose(library);
  }
  return library != nullptr;
}

// Runs a program in a folder, "NAME=value ..." before it, arguments as for a shell. Its exit status; -1 for a violent
// end.
inline int run_program(const std::string& folder, const std::string& environment, const std::string& program,
                       const std::string& arguments, const std::string& out, const std::string& err) {
  const std::string command = "cd '" + folder + "' && " + environment + " '" + program + "' " + arguments + " >" + out +
                              " 2>" + err + " </dev/null";
  const int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Runs something on a thread that has a stack of so many bytes and waits for it.
inline bool run_with_stack(std::size_t bytes, std::function<void()> run, void* stack = nullptr) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  if (stack != nullptr) {
    pthread_attr_setstack(&attributes, stack, bytes);
  } else {
    pthread_attr_setstacksize(&attributes, bytes);
  }
  const auto start = [](void* argument) -> void* {
    (*static_cast<std::function<void()>*>(argument))();
    return nullptr;
  };
  pthread_t thread;
  const bool started = pthread_create(&thread, &attributes, start, &run) == 0;
  pthread_attr_destroy(&attributes);
  return started && pthread_join(thread, nullptr) == 0;
}

// How many bytes of its stack a thread wrote to, found by painting the stack before.
inline std::size_t stack_written_by(const std::function<void()>& run) {
  constexpr std::size_t size = 1024 * 1024;
  constexpr std::size_t page = 4096;
  constexpr unsigned char paint = 0xA5;
  const std::unique_ptr<void, decltype(&std::free)> stack(std::aligned_alloc(page, size), &std::free);
  std::memset(stack.get(), paint, size);
  run_with_stack(size, run, stack.get());
  const auto* const bytes = static_cast<const unsigned char*>(stack.get());
  return static_cast<std::size_t>(bytes + size - std::find_if(bytes, bytes + size, [](auto b) { return b != paint; }));
}

}  // namespace zortest
