// SPDX-License-Identifier: MIT
// The solver log in a process whose standard streams are closed or cannot be written, or that has no descriptor left.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "ZORTAVListing.h"
#include "ZORTAVMatrixVectorProduct.h"
#include "ZORTavListingServices.h"
#include "support/files.h"
#include "test_system.h"

namespace {

using Log = ZORTavListingServices;
using zortav::test::captured;
using zortav::test::contents;
using zortav::test::ScratchFolder;

constexpr int32_t too_many_files = static_cast<int32_t>(0x80070004U);

std::string log_file() {
  return std::string(Log::GetDirectory().GetText()) + "/" + Log::GetFileName().GetText();
}

// Standard output cannot take what it has been given: none of that gets into the log, and the log is complete.
[[noreturn]] void print_with_full_standard_output(const std::string& folder) {
  dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO);
  bool good = Log::Set(folder.c_str()) == 0;
  for (const char* line : {"one", "two"}) {
    std::fputs("for standard output", stdout);
    ehprint(line);
  }
  good = std::ferror(stdout) != 0 && good;
  std::fputs("for standard output", stdout);
  good = eyflsh() != 0 && good;
  good = contents(log_file()) == "one\ntwo\n" && good;
  // Without a log the lines are standard output's, and lost.
  good = Log::Reset() == 0 && good;
  ehprint("three");
  std::_Exit(good ? 0 : 1);
}

TEST(LogDescriptors, StandardOutputThatTakesNothing) {
  const ScratchFolder folder;
  EXPECT_EXIT(print_with_full_standard_output(folder.path()), testing::ExitedWithCode(0), "");
}

// A process without any standard stream: no file of its own takes their places, so that what goes to a stream by
// accident, as the last words of a fatal stop do, spoils none.
[[noreturn]] void stop_without_streams(const std::string& folder) {
  for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
    close(descriptor);
  }
  if (Log::Set(folder.c_str()) != 0 || Log::GetDescriptor() <= STDERR_FILENO) {
    std::_Exit(2);
  }
  ehprint("nowhere to be redirected from");
  const int32_t one = 1;
  const double factor = 1;
  double a = 0;
  eagemv("?", &one, &one, &factor, &a, &one, &a, &one, &factor, &a, &one, 1);
  std::_Exit(3);
}

TEST(LogDescriptors, NoStandardStreams) {
  const ScratchFolder folder;
  EXPECT_EXIT(stop_without_streams(folder.path()), testing::ExitedWithCode(1), "^$");
  for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
    EXPECT_EQ(contents(entry.path().string()), "");
  }
}

void limit_descriptors(rlim_t count) {
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  limit.rlim_cur = count;
  setrlimit(RLIMIT_NOFILE, &limit);
}

// Where no descriptor is left to put standard output aside, the line is not lost: standard output has it.
[[noreturn]] void print_without_descriptors(const std::string& folder) {
  bool good = Log::Set(folder.c_str()) == 0;
  const std::string other = folder + "/other";
  const int output = open(other.c_str(), O_WRONLY | O_CREAT, 0600);
  dup2(output, STDOUT_FILENO);
  close(output);
  ehprint("to the log");
  limit_descriptors(static_cast<rlim_t>(Log::GetDescriptor()) + 1);
  ehprint("to standard output");
  limit_descriptors(64);
  ehprint("to the log again");
  good = contents(log_file()) == "to the log\nto the log again\n" && contents(other) == "to standard output\n" && good;
  good = Log::Reset() == 0 && good;
  limit_descriptors(STDERR_FILENO + 1);
  good = Log::Set(folder.c_str()) == too_many_files && Log::GetDescriptor() == -1 && good;
  std::_Exit(good ? 0 : 1);
}

TEST(LogDescriptors, NoneLeft) {
  const ScratchFolder folder;
  EXPECT_EXIT(print_without_descriptors(folder.path()), testing::ExitedWithCode(0), "");
}

}  // namespace
