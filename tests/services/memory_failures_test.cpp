// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <numeric>

#include "services/managed_memory.h"
#include "test_system.h"

namespace {

using zortest::Manager;
using zortest::MemoryRefusal;
using Lengths = std::vector<long long>;
using Sizes = std::vector<std::size_t>;

constexpr int never = MemoryRefusal::never;

struct MemoryFailures : zortest::MemoryTest {
  MemoryFailures() { zortest::remove_variable("TAV_MAX_ALLOC"); }
  ~MemoryFailures() override { zortest::remove_variable("TAV_MAX_ALLOC"); }
};

TEST_F(MemoryFailures, WarningModeRefusesFromOneWordAboveTheLimitOn) {
  zortest::set_variable("TAV_MAX_ALLOC", "1");  // 128018 words, 1000 kilobytes
  Manager manager;
  const long long most = 128016 * 8;
  EXPECT_EQ(manager.allocate({most + 8}), 0);  // nothing is refused with the mode off
  manager.SetModeWarning(1026);
  EXPECT_EQ(manager.allocate({most, most}), 0);
  EXPECT_EQ(manager.allocate({8, 800, most + 8, 8}), 8);
  EXPECT_EQ(manager.arrays, std::vector<char*>(4));
  expect_report("2 WARN_0300 refused 1000 1000");
  manager.SeparateBlocks = 0;  // as a whole, in one block
  EXPECT_EQ(manager.allocate({most / 2, most / 2}), 8);
  EXPECT_EQ(manager.allocate({most / 2, most / 2 - 8}), 0);
  EXPECT_EQ(manager.blocks(), (Lengths{128018, 128017, 128017, 128017}));
  expect_no_report();
}

TEST_F(MemoryFailures, TellHowMuchIsAvailableAndGiveUpTheGroupMadeLast) {
  Manager manager;
  ASSERT_EQ(manager.allocate({8}), 0);
  ASSERT_EQ(manager.allocate({16, 16}), 0);
  const auto request = [&](std::size_t most) {
    const MemoryRefusal large(never, never, most);
    EXPECT_NE(manager.allocate({8, 1000000, 8}), 0);
    EXPECT_EQ(manager.arrays, std::vector<char*>(3));
    return large.sizes();
  };
  manager.SetModeWarning(1026);
  const Sizes tries{24, 1000016, 950008, 900008, 850008, 800008, 750008, 700008, 650008};
  EXPECT_EQ(request(700000), tries);
  EXPECT_EQ(manager.status, 8);
  expect_report("2 WARN_0300 refused 976 634");
  EXPECT_EQ(manager.blocks(), (Lengths{2, 3, 3}));
  manager.ResetModeWarning();
  EXPECT_EQ(request(700000), tries);
  EXPECT_EQ(manager.status, E_FAIL);
  expect_report("1 ERR_0302 no memory 976 634");
  EXPECT_EQ(manager.blocks(), Lengths{2});
  EXPECT_EQ(manager.GetIndiceAllocation(), 2);
  // The last try is the one above a step.
  EXPECT_EQ(request(50000).back(), 50008U);
  expect_report("1 ERR_0302 no memory 976 0");
  EXPECT_EQ(manager.blocks(), Lengths{});
  EXPECT_EQ(request(50008).back(), 50008U);
  expect_report("1 ERR_0302 no memory 976 48");
  EXPECT_EQ(manager.GetIndiceAllocation(), 1);
  EXPECT_EQ(manager.MemoryUsed, 0);

  const MemoryRefusal all(1);
  EXPECT_EQ(manager.allocate({8}), E_FAIL);
  EXPECT_EQ(all.sizes(), (Sizes{24, 15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2}));
  expect_report("1 ERR_0302 no memory 0 0");
}

TEST_F(MemoryFailures, OfATableRaiseItsCapacityAllTheSame) {
  Manager manager(150);
  ASSERT_EQ(manager.allocate(Lengths(149, 8)), 0);  // as many as go without growth
  {
    const MemoryRefusal one(1, 1);
    EXPECT_EQ(manager.allocate({8}), E_FAIL);
  }
  expect_report("1 ERR_0302 no memory 2 2");  // of 300 words
  EXPECT_EQ(manager.blocks(), Lengths{});
  ASSERT_EQ(manager.allocate(Lengths(298, 8)), 0);
  EXPECT_EQ(manager.TableCapacity, 300);
  zortest::fill(manager.arrays, Lengths(298, 16));
}

// A kind of request, and the blocks that it makes out of a manager's {2, 2}.
struct Kind {
  const char* name;
  std::function<int(Manager&)> request;
  Lengths blocks;
};

int typed(Manager& manager) {
  double* reals = nullptr;
  char** texts = nullptr;
  const int status = manager.Allocation(manager.group, reals, 10, texts, 3);
  if (status == 0) {
    reals[9] = 1;
    texts[2] = nullptr;
  }
  return status;
}

int manual(Manager& manager) {
  int group = manager.GroupCount;
  return manager.ManualReallocation(group, manager.arrays[0], 8, 80);
}

const Kind kinds[] = {
    {"array",
     [](Manager& m) {
       return m.allocate({8, 80, 800});
     },
     {2, 2, 2, 11, 101}},
    {"many", [](Manager& m) { return m.allocate(Lengths(6, 8)); }, {2, 2, 2, 2, 2, 2, 2, 2}},
    {"pairs", [](Manager& m) { return m.Allocation(2, m.group, m.arrays[0], 8, m.arrays[0], 80); }, {2, 2, 2, 11}},
    {"typed", typed, {2, 2, 11, 4}},
    {"manual", manual, {2, 0, 11}},
};

// Each request fails at its k-th allocation, once or from there on; then the same request is made again.
void inject(MemoryFailures& test, const Kind& kind, int table_size, int separate, int mode, bool for_good) {
  int k = 0;
  for (bool reached = true; reached;) {
    ++k;
    SCOPED_TRACE(std::string(kind.name) + ", allocation " + std::to_string(k));
    ASSERT_LT(k, 20);
    Manager manager(table_size);
    manager.SeparateBlocks = separate;
    ASSERT_EQ(manager.allocate({8}), 0);
    ASSERT_EQ(manager.allocate({8}), 0);
    manager.SetModeWarning(mode);
    const int groups = manager.GroupCount;
    {
      const MemoryRefusal refusal(k, for_good ? never : k);
      const int status = kind.request(manager);
      reached = refusal.requests() >= k;
      const auto reports = test.reports.take();
      if (status == 0) {  // nothing was refused, or one block was and separate ones were not
        EXPECT_TRUE(!reached || (separate == 0 && !for_good));
        EXPECT_TRUE(reports.empty());
        EXPECT_EQ(manager.GroupCount, groups + 1);
        continue;
      }
      const bool tables = manager.GroupCount < groups;
      EXPECT_EQ(status, mode != 0 && !tables ? 8 : E_FAIL);
      EXPECT_EQ(manager.GroupCount, status == 8 ? groups : groups - 1);
      ASSERT_EQ(reports.size(), 1U);
      EXPECT_EQ(reports[0].substr(0, 20), status == 8 ? "2 WARN_0300 refused " : "1 ERR_0302 no memory");
      if (manager.arrays.size() > 1) {
        EXPECT_EQ(manager.arrays, std::vector<char*>(manager.arrays.size()));
      }
    }
    const Lengths left = manager.blocks();
    EXPECT_EQ(manager.MemoryUsed, std::accumulate(left.begin(), left.end(), 0LL));
    EXPECT_EQ(manager.Desallocation(2), 0);
    ASSERT_EQ(manager.allocate({8}), 0);
    EXPECT_EQ(kind.request(manager), 0);
    if (separate == 1) {
      EXPECT_EQ(manager.blocks(), kind.blocks);
    }
    zortest::fill(manager.arrays, Lengths(manager.arrays.size(), 8));
    EXPECT_EQ(manager.Desallocation(1), 0);
    EXPECT_EQ(manager.MemoryUsed, 0);
  }
  EXPECT_GE(k, 2);
}

TEST_F(MemoryFailures, AtEveryAllocationLeaveNothingAndTheNextRequestWorks) {
  for (const Kind& kind : kinds) {
    for (const int table_size : {4, 100}) {  // with growth of the tables and without
      for (const int separate : {1, 0}) {
        for (const int mode : {0, 1026}) {
          inject(*this, kind, table_size, separate, mode, false);
          inject(*this, kind, table_size, separate, mode, true);
        }
      }
    }
  }
}

TEST_F(MemoryFailures, AManagerMadeWithoutMemoryWorksOnceThereIsSome) {
  for (int k = 1; k <= 3; ++k) {
    MemoryRefusal from(k);
    Manager manager;
    EXPECT_EQ(manager.Desallocation(1), 0);
    EXPECT_EQ(manager.allocate({8}), E_FAIL);
    expect_report("1 ERR_0302 no memory 0 0");
    from.~MemoryRefusal();
    new (&from) MemoryRefusal;
    EXPECT_EQ(manager.allocate({8}), 0);
    EXPECT_EQ(manager.blocks(), Lengths{2});
    EXPECT_EQ(manager.TableCapacity, 100);
  }
}

}  // namespace
