// SPDX-License-Identifier: MIT
// The same bits on every platform, at every instruction-set level, with any number of threads: every numerical entry
// point is called with a set of inputs of its own, and the hash of all its results is held against the committed table.
//
// A line of the table is a routine, the levels it speaks of ("any", or "unfused" and "fused" where the class of the
// routine lets a level fuse multiplication and addition) and the hash.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <map>
#include <set>
#include <sstream>
#include <string>

#include "ZORTAVConfiguration.h"
#include "ZORTAVInstructionSet.h"
#include "hashes/bit_hash.h"
#include "team.h"
#include "test_system.h"

namespace zortest {
namespace {

using Hashes = std::map<std::string, std::string>;  // by "routine level"

std::string hash_of(const Routine& routine) {
  BitHash hash;
  routine.run(hash);
  std::ostringstream text;
  text << std::hex << std::setw(16) << std::setfill('0') << hash.value();
  return text.str();
}

bool fuses(std::int32_t level) {
  return level > ZORTavInstructionSetSse4;
}

// Goes through the levels that the machine offers.
template <class Run>
void at_every_level(Run run) {
  std::int32_t active = 0, highest = 0, reason = 0;
  ehgetisa(&active, &highest, &reason);
  for (std::int32_t level = 0; level <= highest; ++level) {
    std::int32_t status = -1;
    ehsetisa(&level, &status);
    ASSERT_EQ(status, 0);
    run(level);
  }
}

Hashes committed() {
  Hashes table;
  std::ifstream file(SAME_BITS_TABLE);
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string routine, level, hash;
    if (words >> routine >> level >> hash && routine[0] != '#') {
      table[routine + " " + level] = hash;
    }
  }
  return table;
}

void expect_committed_hashes(const Hashes& table, const std::string& how) {
  at_every_level([&](std::int32_t level) {
    for (const Routine& routine : all_routines()) {
      const std::string name = routine.name;
      const auto any = table.find(name + " any");
      const auto own = table.find(name + (fuses(level) ? " fused" : " unfused"));
      const std::string hash = hash_of(routine);
      ASSERT_TRUE(any != table.end() || own != table.end()) << name << " is not in the table: build update_same_bits";
      EXPECT_EQ(any != table.end() ? any->second : own->second, hash)
          << name << " at level " << ehisanm(&level) << ", " << how;
    }
  });
}

void write_table(const char* path) {
  std::map<std::string, std::set<std::string>> hashes[2];
  at_every_level([&hashes](std::int32_t level) {
    for (const Routine& routine : all_routines()) {
      hashes[fuses(level) ? 1 : 0][routine.name].insert(hash_of(routine));
    }
  });
  std::ofstream file(path);
  file << "# Hashes of results, one a routine and set of inputs. Made by the target update_same_bits.\n";
  for (const auto& [name, unfused] : hashes[0]) {
    const auto& fused = hashes[1][name];
    ASSERT_TRUE(unfused.size() == 1 && fused.size() == 1) << name << ": AVX2 and AVX-512 must agree, and be offered";
    if (unfused == fused) {
      file << name << " any " << *unfused.begin() << "\n";
    } else {
      file << name << " unfused " << *unfused.begin() << "\n" << name << " fused " << *fused.begin() << "\n";
    }
  }
}

TEST(SameBits, TheTableHoldsOnEveryPlatformLevelAndTeam) {
  if (const char* path = std::getenv("ZORTAV_WRITE_HASHES")) {
    write_table(path);
    return;
  }
  const Hashes table = committed();
  expect_committed_hashes(table, "before the threading mode is determined");
  set_variable("OMP_NUM_THREADS", "3");
  std::int32_t decision = 0;
  ehaldb(&decision);
  for (const int threads : {1, 2, 3}) {
    set_team(threads);
    expect_committed_hashes(table, std::to_string(threads) + " threads");
  }
}

// Every plain entry that computes numbers is in the table; those that do not are named here.
TEST(SameBits, NoRoutineIsLeftOut) {
  const std::set<std::string> no_numbers{
      "GetErrorLog", "GetMaxSlaveMemory", "SetErrorLog", "SetTavTraces", "ZORTAVTraceState", "clrfpe",
      "ehaldb",      "ehalmxc",           "ehgetisa",    "ehisanm",      "ehprini",          "ehprinr",
      "ehprint",     "ehrprog",           "ehsetisa",    "ehucpu",       "ehumem",           "eyflsh",
      "getblas",     "getversionmkl"};
  std::set<std::string> covered;
  for (const Routine& routine : all_routines()) {
    EXPECT_TRUE(covered.insert(routine.name).second) << routine.name << " is there twice";
  }
  int entries = 0;
  std::ifstream exported(EXPORTED_SYMBOLS);
  for (std::string name; std::getline(exported, name);) {
    const bool plain = name.rfind("_Z", 0) != 0 && name.rfind("Tra_", 0) != 0;
    if (plain && no_numbers.count(name) == 0) {
      ++entries;
      EXPECT_EQ(covered.count(name), 1U) << name;
    }
  }
  EXPECT_EQ(static_cast<std::size_t>(entries), covered.size());
}

}  // namespace
}  // namespace zortest
