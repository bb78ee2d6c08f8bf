// SPDX-License-Identifier: MIT
// The configuration is decided once per process from its environment: every case is a process of its own.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "ZORMathematics.h"
#include "ZORSystem.h"
#include "ZORTAVConfiguration.h"
#include "services/configuration/threading_mode.h"
#include "team.h"
#include "test_system.h"

namespace {

int32_t result_of(void (*entry)(int32_t*)) {
  int32_t result = 77;
  entry(&result);
  return result;
}

std::string results_of_getblas() {
  int32_t r[] = {77, 77, 77};
  getblas(&r[0], &r[1], &r[2]);
  return std::to_string(r[0]) + "," + std::to_string(r[1]) + "," + std::to_string(r[2]);
}

// Obeys the words in order and gives the answers. NAME=VALUE sets a variable, -NAME removes it, ?NAME asks for it.
std::string obey(const std::string& words) {
  std::ostringstream answers;
  std::istringstream split(words);
  for (std::string word; split >> word;) {
    const std::size_t equals = word.find('=');
    if (equals != std::string::npos) {
      zortest::set_variable(word.substr(0, equals), word.substr(equals + 1));
    } else if (word[0] == '-') {
      zortest::remove_variable(word.substr(1));
    } else if (word == "one-processor") {
      zortest::keep_one_processor();
    } else if (word[0] == '?') {
      const char* value = ZORGetEnv(word.c_str() + 1);
      answers << (value != nullptr ? value : "unset") << " ";
    } else if (word == "getblas") {
      answers << results_of_getblas() << " ";
    } else {
      answers << (word == "ehaldb"   ? result_of(ehaldb)
                  : word == "ehumem" ? result_of(ehumem)
                  : word == "mode"   ? zortav::threading_mode()
                  : word == "cores"  ? ZORCpuQuery::GetCores()
                  : word == "team"   ? zortest::team_size()
                                     : -77)
              << " ";
    }
  }
  return answers.str();
}

[[noreturn]] void obey_and_exit(const std::string& words) {
  std::fputs(obey(words).c_str(), stderr);
  std::exit(0);
}

struct Case {
  std::string variables;  // none but these when the process starts
  std::string words;
  std::string expected;
};

void check(const std::vector<Case>& cases) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";  // a new process, whose runtime libraries start afresh
  for (const Case& c : cases) {
    zortest::remove_all_variables();
    obey(c.variables);
    EXPECT_EXIT(obey_and_exit(c.words), testing::ExitedWithCode(0), "^" + c.expected + " $")
        << c.words << " with " << c.variables;
  }
}

TEST(Configuration, TheEnvironmentDecidesTheThreadingMode) {
  const std::string ask = "getblas ?OMP_NUM_THREADS ?MKL_NPROCS";
  check({
      // A thread count of the user decides, and nothing is written. Decimal only, no number is 0, empty is set.
      {"OMP_NUM_THREADS=1", ask, "0,0,0 1 unset"},
      {"OMP_NUM_THREADS=4,2", ask, "2,0,0 4,2 unset"},
      {"OMP_NUM_THREADS=3 ADL_ODT_OUT=/tmp", ask, "2,0,0 3 unset"},
      {"", "OMP_NUM_THREADS=0x10 getblas OMP_NUM_THREADS=many getblas OMP_NUM_THREADS=-4 getblas", "0,0,0 0,0,0 0,0,0"},
      {"", "OMP_NUM_THREADS= getblas ?MKL_NPROCS", "0,0,0 unset"},
      // A log directory leaves the threads alone.
      {"ADL_ODT_OUT=/tmp", ask, "0,0,0 unset unset"},
      {"ADL_ODT_OUT=", ask, "0,0,0 unset unset"},
      // Replay always selects the multi-threaded mode.
      {"ADL_ODT_OUT=/tmp ReplayPurify=no", ask, "2,0,0 unset unset"},
      {"ReplayPurify= OMP_NUM_THREADS=1", ask, "2,0,0 1 unset"},
      {"ReplayPurify=1", "one-processor getblas ?OMP_NUM_THREADS", "2,0,0 1"},
  });
}

TEST(Configuration, WithoutAnyVariableTheProcessorsDecide) {
  const std::string cores = std::to_string(ZORCpuQuery::GetCores());
  const std::string mode = cores == "1" ? "0,0,0 " : "2,0,0 ";
  const std::string ask = "getblas ?OMP_NUM_THREADS ?MKL_NPROCS team";
  check({
      {"", ask, mode + cores + " 1 " + cores},
      // The OpenMP runtime counted before the mask shrank: the team shows that it was told.
      {"", "one-processor " + ask, "0,0,0 1 1 1"},
      // Every call decides afresh, also after somebody removed its entries.
      {"", "getblas getblas -OMP_NUM_THREADS -MKL_NPROCS " + ask, mode + mode + mode + cores + " 1 " + cores},
      // A runtime that binds its threads binds the caller too; that is not what the process may use.
      {"OMP_PROC_BIND=true", "team cores", cores + " " + cores},
  });
}

TEST(Configuration, TheDecisionIsZeroAndIsTakenOnce) {
  check({
      {"OMP_NUM_THREADS=3", "mode getblas mode ehaldb mode OMP_NUM_THREADS=1 ehaldb mode", "0 2,0,0 0 0 2 0 2"},
      {"", "one-processor ehaldb ?OMP_NUM_THREADS -OMP_NUM_THREADS ehaldb ?OMP_NUM_THREADS", "0 1 0 unset"},
  });
}

TEST(Configuration, WorkingMemory) {
  const auto machine = static_cast<int64_t>(zortest::physical_memory());
  EXPECT_EQ(ZORGetPhysicalMemory(), zortest::physical_memory());
  const std::string measured = std::to_string(std::clamp<int64_t>(machine / 8, 536000000, 2144000000));
  check({{"", "ehumem TAV_REAL_MEMORY=16000 ehumem", measured + " " + measured},
         {"TAV_REAL_MEMORY=16000", "ehumem -TAV_REAL_MEMORY ehumem", "2097152000 2097152000"},
         {"TAV_REAL_MEMORY=4090", "ehumem", "536084480"},
         {"TAV_REAL_MEMORY=16358", "ehumem", "2144000000"},
         {"TAV_REAL_MEMORY=37000", "ehumem", "554696704"}});
  for (const std::string few : {"", "all", "1000", "4089", "16384", "20000"}) {
    check({{"TAV_REAL_MEMORY=" + few, "ehumem", "536000000"}});
  }
}

TEST(Configuration, ThreadCount) {
  zortest::remove_variable("OMP_NUM_THREADS");
  EXPECT_EQ(result_of(ehucpu), 1);
  for (const auto& [text, threads] :
       {std::pair{"", 1}, {" 12 threads", 12}, {"0x10", 16}, {"010", 8}, {"-3", -3}, {"many", 1}}) {
    zortest::set_variable("OMP_NUM_THREADS", text);
    EXPECT_EQ(result_of(ehucpu), threads) << text;
  }
}

TEST(Configuration, SlaveMemoryAndVendorVersion) {
  EXPECT_EQ(result_of(GetMaxSlaveMemory), 1073000000);
  std::string text = "####";
  getversionmkl(text.data(), static_cast<int64_t>(text.size()));
  EXPECT_EQ(text, std::string("\0###", 4));
}

}  // namespace
