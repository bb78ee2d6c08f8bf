// SPDX-License-Identifier: MIT
// The configuration is decided once per process from its environment: every case is a process of its own.
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "ZORSystem.h"
#include "ZORTAVConfiguration.h"

namespace {

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> p;
  p.reserve(texts.size() + 1);
  for (std::string& text : texts) {
    p.push_back(text.data());
  }
  p.push_back(nullptr);
  return p;
}

// What the probe prints for the words, with these variables and none of those that the library reads.
std::string probe(const std::vector<std::string>& variables, const std::string& words) {
  std::vector<std::string> environment = variables;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string text = *entry;
    const bool ours = text.starts_with("OMP_") || text.starts_with("TAV_") || text.starts_with("MKL_") ||
                      text.starts_with("GOMP_") || text.starts_with("KMP_") || text.starts_with("ADL_ODT_OUT=") ||
                      text.starts_with("ReplayPurify=");
    if (!ours) {
      environment.push_back(text);
    }
  }
  std::vector<std::string> arguments = {PROBE};
  std::istringstream split(words);
  for (std::string word; split >> word;) {
    arguments.push_back(word);
  }

  std::array<int, 2> channel{};
  EXPECT_EQ(pipe(channel.data()), 0);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, channel[1], STDOUT_FILENO);
  posix_spawn_file_actions_addclose(&actions, channel[0]);
  pid_t child = 0;
  const int failure =
      posix_spawn(&child, PROBE, &actions, nullptr, pointers(arguments).data(), pointers(environment).data());
  posix_spawn_file_actions_destroy(&actions);
  close(channel[1]);
  EXPECT_EQ(failure, 0) << "cannot start " << PROBE;
  std::string output;
  std::array<char, 256> piece{};
  for (ssize_t got = 0; (got = read(channel[0], piece.data(), piece.size())) > 0;) {
    output.append(piece.data(), static_cast<std::size_t>(got));
  }
  close(channel[0]);
  int status = -1;
  if (failure == 0) {
    waitpid(child, &status, 0);
  }
  EXPECT_EQ(status, 0) << "the probe failed";
  return output.substr(0, output.find('\n'));
}

struct Case {
  std::vector<std::string> variables;
  std::string words;
  std::string expected;
};

void check(const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    EXPECT_EQ(probe(c.variables, c.words), c.expected) << c.words << " with " << testing::PrintToString(c.variables);
  }
}

TEST(Configuration, AThreadCountOfTheUserDecidesAndNothingIsWritten) {
  const std::string ask = "getblas ?OMP_NUM_THREADS ?MKL_NPROCS";
  check({
      {{"OMP_NUM_THREADS=1"}, ask, "0,0,0 1 unset"},
      {{"OMP_NUM_THREADS=2"}, ask, "2,0,0 2 unset"},
      {{"OMP_NUM_THREADS=4,2"}, ask, "2,0,0 4,2 unset"},
      {{"OMP_NUM_THREADS=3", "ADL_ODT_OUT=/tmp"}, ask, "2,0,0 3 unset"},
      // decimal only, and no number is 0
      {{"OMP_NUM_THREADS=0x10"}, ask, "0,0,0 0x10 unset"},
      {{"OMP_NUM_THREADS=many"}, ask, "0,0,0 many unset"},
      {{"OMP_NUM_THREADS=-4"}, ask, "0,0,0 -4 unset"},
      // set but empty is set
      {{"OMP_NUM_THREADS="}, "getblas ?MKL_NPROCS", "0,0,0 unset"},
  });
}

TEST(Configuration, ALogDirectoryLeavesTheThreadsAlone) {
  const std::string ask = "getblas ?OMP_NUM_THREADS ?MKL_NPROCS";
  check({
      {{"ADL_ODT_OUT=/tmp"}, ask, "0,0,0 unset unset"},
      {{"ADL_ODT_OUT="}, ask, "0,0,0 unset unset"},
      {{"ADL_ODT_OUT=/tmp", "ReplayPurify=no"}, ask, "2,0,0 unset unset"},
  });
}

TEST(Configuration, ReplayAlwaysSelectsTheMultiThreadedMode) {
  check({
      {{"ReplayPurify=", "OMP_NUM_THREADS=1"}, "getblas", "2,0,0"},
      {{"ReplayPurify=0", "OMP_NUM_THREADS=1"}, "getblas", "2,0,0"},
      {{"ReplayPurify=1"}, "one-processor getblas ?OMP_NUM_THREADS", "2,0,0 1"},
  });
}

TEST(Configuration, WithoutAnyVariableTheProcessorsDecide) {
  const std::string cores = probe({}, "cores");
  const std::string mode = std::stoi(cores) > 1 ? "2,0,0" : "0,0,0";
  check({
      {{}, "getblas ?OMP_NUM_THREADS ?MKL_NPROCS team", mode + " " + cores + " 1 " + cores},
      // The OpenMP runtime counted before the mask shrank: the team shows that it was told.
      {{}, "one-processor getblas ?OMP_NUM_THREADS ?MKL_NPROCS team", "0,0,0 1 1 1"},
      // Every call decides afresh, also with its own entry in place and after somebody removed it.
      {{},
       "getblas getblas -OMP_NUM_THREADS -MKL_NPROCS getblas ?OMP_NUM_THREADS ?MKL_NPROCS",
       mode + " " + mode + " " + mode + " " + cores + " 1"},
      // A runtime that binds its threads binds the caller too; that is not what the process may use.
      {{"OMP_PROC_BIND=true"}, "team cores", cores + " " + cores},
  });
}

TEST(Configuration, TheDecisionIsZeroAndIsTakenOnce) {
  check({
      {{"OMP_NUM_THREADS=4"}, "ehaldb ehaldb OMP_NUM_THREADS=1 ehaldb", "0 0 0"},
      {{"ReplayPurify=1"}, "ehaldb ehaldb", "0 0"},
      {{}, "one-processor ehaldb ?OMP_NUM_THREADS -OMP_NUM_THREADS ehaldb ?OMP_NUM_THREADS", "0 1 0 unset"},
  });
}

TEST(Configuration, ThreadCount) {
  const auto with = [](const std::string& value, const std::string& expected) {
    return Case{{"OMP_NUM_THREADS=" + value}, "ehucpu", expected};
  };
  check({{{}, "ehucpu", "1"},
         with("", "1"),
         with("8", "8"),
         with(" 12 threads", "12"),
         with("0x10", "16"),
         with("010", "8"),
         with("-3", "-3"),
         with("0", "0"),
         with("many", "1")});
}

TEST(Configuration, LargestAllocation) {
  const auto with = [](const std::string& value, const std::string& expected) {
    return Case{{"TAV_MAX_ALLOC=" + value}, "ehalmxc", expected};
  };
  const std::string unlimited = "2147400000";
  check({{{}, "ehalmxc", unlimited},
         with("", unlimited),
         with("much", unlimited),
         with("0", unlimited),
         with("-1", unlimited),
         with("1", "128018"),
         with("100", "12801800"),
         with("2096", "268325728"),
         with("2097", unlimited),
         with("3000", unlimited),
         with("5000", "103219088"),
         {{}, "ehalmxc TAV_MAX_ALLOC=100 ehalmxc -TAV_MAX_ALLOC ehalmxc", unlimited + " 12801800 " + unlimited}});
}

TEST(Configuration, WorkingMemory) {
  const auto with = [](const std::string& value, const std::string& expected) {
    return Case{{"TAV_REAL_MEMORY=" + value}, "ehumem", expected};
  };
  const std::string least = "536000000";
  const std::string most = "2144000000";
  const auto machine = static_cast<std::int64_t>(ZORGetPhysicalMemory() / 8);
  const std::string measured =
      std::to_string(std::min<std::int64_t>(std::max<std::int64_t>(machine, 536000000), 2144000000));
  check({with("", least),
         with("all", least),
         with("-1", least),
         with("1000", least),
         with("4089", least),
         with("4090", "536084480"),
         with("16000", "2097152000"),
         with("16357", "2143944704"),
         with("16358", most),
         with("16383", most),
         with("16384", least),
         with("20000", least),
         with("37000", "554696704"),
         {{}, "ehumem", measured},
         {{}, "ehumem TAV_REAL_MEMORY=16000 ehumem", measured + " " + measured},
         {{"TAV_REAL_MEMORY=16000"}, "ehumem -TAV_REAL_MEMORY ehumem", "2097152000 2097152000"}});
}

TEST(Configuration, SlaveMemoryAndVendorVersion) {
  int32_t words = 0;
  GetMaxSlaveMemory(&words);
  EXPECT_EQ(words, 1073000000);
  std::string text = "####";
  getversionmkl(text.data(), static_cast<int64_t>(text.size()));
  EXPECT_EQ(text, std::string("\0###", 4));
}

}  // namespace
