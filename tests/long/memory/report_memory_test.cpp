// SPDX-License-Identifier: MIT
// Every allocation of an error report is refused once, and every one from some point on: the report comes out with less
// in it, or the process stops with a word about it. Nothing is thrown at the caller, and the next report is whole.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "ZORTavErrorTools.h"
#include "ZORTavListingServices.h"
#include "support/files.h"
#include "support/refused_allocations.h"

namespace {

using zortav::test::contents;
using zortav::test::ScratchFolder;
using zortest::allocations_left;
using zortest::refusals_left;

enum Outcome : int { refused_and_reported = 10, nothing_to_refuse, wrong, fatal_stop = 1 };

void report() {
  ZORTavErrorTools::CreateError(302, "ZORTAVMathKernelError", 4711, 42);
}

// In a process of its own, whose catalogs have not been read.
[[noreturn]] void report_without_memory(const std::string& folder, int granted, int refusals) {
  ZORTavListingServices::Set(folder.c_str());
  const std::string file = folder + "/" + ZORTavListingServices::GetFileName().GetText();
  allocations_left = granted;
  refusals_left = refusals;
  report();
  const bool refused = refusals_left < refusals;
  allocations_left = -1;
  const std::size_t first = contents(file).size();
  report();
  const std::string text = contents(file);
  const bool whole = text.find("4711", first) != std::string::npos && text.find("42", first) != std::string::npos;
  const bool first_is_whole = text.substr(0, first) == text.substr(first);
  const bool good = whole && (refused || first_is_whole);
  std::_Exit(!good ? wrong : refused ? refused_and_reported : nothing_to_refuse);
}

TEST(ReportMemory, ARefusedAllocationNeverThrowsAndTheNextReportIsWhole) {
  const ScratchFolder folder;
  zortest::throwing_ones_fail_too = true;
  for (const int refusals : {1, 1000000}) {
    int status = refused_and_reported;
    int granted = 0;
    int reported = 0;
    for (; status != nothing_to_refuse; ++granted) {
      ASSERT_LT(granted, 10000);
      const pid_t child = fork();
      ASSERT_NE(child, -1);
      if (child == 0) {
        std::freopen("/dev/null", "w", stderr);
        report_without_memory(folder.path(), granted, refusals);
      }
      int result = 0;
      waitpid(child, &result, 0);
      ASSERT_TRUE(WIFEXITED(result)) << "signal " << WTERMSIG(result) << " after " << granted;
      status = WEXITSTATUS(result);
      ASSERT_TRUE(status == refused_and_reported || status == nothing_to_refuse || status == fatal_stop)
          << status << " after " << granted;
      reported += status == refused_and_reported ? 1 : 0;
    }
    EXPECT_GT(granted, 20);
    EXPECT_GT(reported, refusals == 1 ? granted / 2 : 0) << "the rest are stops";
  }
}

}  // namespace
