// SPDX-License-Identifier: MIT
// No routine takes more of the caller's stack than the page on threads promises, at any instruction-set level.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "ZORTAVConfiguration.h"
#include "ZORTAVInstructionSet.h"
#include "hashes/bit_hash.h"
#include "test_system.h"

namespace zortest {
namespace {

constexpr std::size_t kib = 1024;
// The thread's start, the inputs' generator and the loader's first lookup of a symbol.
constexpr std::size_t test_itself = 12 * kib;
// A promise that nothing comes near is out of date; small needs drown in those of the test itself.
constexpr std::size_t worth_a_row = 64 * kib;

// Bytes by the routines' names; "" stands for every other routine.
std::vector<std::pair<std::vector<std::string>, std::size_t>> promised() {
  std::vector<std::pair<std::vector<std::string>, std::size_t>> rows;
  std::ifstream page(THREADS_PAGE);
  const std::regex row("\\| (.*) \\| ([0-9]+) KiB.*");
  const std::regex name("`([a-z0-9_]+)`");
  std::smatch parts;
  for (std::string line; std::getline(page, line);) {
    if (std::regex_match(line, parts, row)) {
      const std::string names = parts[1];
      std::vector<std::string> found;
      for (std::sregex_iterator at(names.begin(), names.end(), name), end; at != end; ++at) {
        found.push_back((*at)[1]);
      }
      if (names == "any other") {
        found.emplace_back();
      }
      rows.emplace_back(found, std::stoul(parts[2]) * kib);
    }
  }
  return rows;
}

// The most that each routine wrote to at any level.
std::map<std::string, std::size_t> measured() {
  std::map<std::string, std::size_t> most;
  std::int32_t active = 0, highest = 0, reason = 0;
  ehgetisa(&active, &highest, &reason);
  for (std::int32_t level = 0; level <= highest; ++level) {
    std::int32_t status = -1;
    ehsetisa(&level, &status);
    for (const Routine& routine : all_routines()) {
      BitHash hash;
      std::size_t& bytes = most[routine.name];
      bytes = std::max(bytes, stack_written_by([&] { routine.run(hash); }));
    }
  }
  return most;
}

TEST(StackNeeds, AreThoseOfThePageOnThreads) {
#if defined(__SANITIZE_ADDRESS__) || !defined(__OPTIMIZE__)
  GTEST_SKIP() << "frames are wider than those of an optimised library";
#endif
  set_variable("OMP_NUM_THREADS", "2");  // else the product is delegated
  std::int32_t decision = 0;
  ehaldb(&decision);
  std::map<std::string, std::size_t> needs = measured();
  std::size_t any_other = 0;
  for (const auto& [names, bytes] : promised()) {
    std::size_t most = 0;
    for (const std::string& name : names) {
      if (name.empty()) {
        any_other = bytes;
      } else if (const auto need = needs.find(name); need != needs.end()) {
        EXPECT_LE(need->second, bytes + test_itself) << name;
        most = std::max(most, need->second);
        needs.erase(need);
      }
    }
    if (most > 0 && bytes >= worth_a_row) {
      EXPECT_GE(most, bytes - bytes / 10) << names.front() << ": the promise is far from what is needed";
    }
  }
  ASSERT_GT(any_other, 0U) << "no table in " THREADS_PAGE;
  for (const auto& [name, bytes] : needs) {
    EXPECT_LE(bytes, any_other + test_itself) << name;
  }
}

}  // namespace
}  // namespace zortest
