// SPDX-License-Identifier: MIT
// Teams of every kind around and inside the library: each result has the bits of a single thread's.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "ZORTAVConfiguration.h"
#include "team_work.h"

namespace {

using zortest::same_bits;
using zortest::set_team;

// 0 stands for what OMP_NUM_THREADS says, more than there are cores.
constexpr int team_sizes[] = {0, 1, 2, 3, 7};

class Teams : public testing::Test {
 protected:
  Teams() {
    int32_t decision = 0;
    ehaldb(&decision);
  }
  ~Teams() override { set_team(usual_team_); }
  void take_team(int size) const { set_team(size == 0 ? usual_team_ : size); }

  int usual_team_ = omp_get_max_threads();
  zortest::TeamWork work_;
  std::vector<double> expected_ = work_.alone();
};

TEST_F(Teams, OfAnySize) {
  for (const int size : team_sizes) {
    take_team(size);
    EXPECT_TRUE(same_bits(expected_, work_.run())) << size << " threads";
  }
}

TEST_F(Teams, OfEightCallersAtOnce) {
  constexpr std::size_t callers = 8;
  constexpr int calls = 3;
  std::vector<int> good(callers, 0);
  std::vector<std::thread> threads;
  for (std::size_t caller = 0; caller < callers; ++caller) {
    threads.emplace_back([&, caller] {
      take_team(team_sizes[caller % std::size(team_sizes)]);
      for (int call = 0; call < calls; ++call) {
        good[caller] += same_bits(expected_, work_.run()) ? 1 : 0;
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(good, std::vector<int>(callers, calls));
}

// As OpenMP has it by default, one level deep, and with teams within teams.
TEST_F(Teams, InsideARegionOfTheCaller) {
  const int levels = omp_get_max_active_levels();
  for (const int active : {1, 2}) {
    omp_set_max_active_levels(active);
    for (const int size : team_sizes) {
      int bad = 0;
#pragma omp parallel num_threads(4) reduction(+ : bad)
      {
        take_team(size == 0 ? 2 : size);
        bad += same_bits(expected_, work_.run()) ? 0 : 1;
      }
      EXPECT_EQ(bad, 0) << size << " threads, " << active << " levels";
    }
  }
  omp_set_max_active_levels(levels);
}

}  // namespace
