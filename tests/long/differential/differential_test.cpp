// SPDX-License-Identifier: MIT
// Every numerical routine against its oracle, case after case, for several seeds.
//
// ZORTAV_TEST_CASES   cases of a routine for each seed (default 480: every size meets every stride)
// ZORTAV_TEST_SEEDS   how many of the five fixed seeds (default 1); 6: all five, and one that changes
// ZORTAV_TEST_SEED    this seed only; with ZORTAV_TEST_CASE this case only, as a failure prints them
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>

#include "long/differential/trial.h"
#include "long/seeds.h"

namespace zortest {
namespace {

std::vector<Routine> all_routines() {
  std::vector<Routine> all;
  for (const auto& part : {level1_routines(), matrix_vector_routines(), sparse_routines(), utility_routines(),
                           algorithm_routines(), product_routines()}) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

class Differential : public testing::TestWithParam<Routine> {};

TEST_P(Differential, AgreesWithItsOracle) {
  const Routine& routine = GetParam();
  const int cases = number_from_environment("ZORTAV_TEST_CASES", 480);
  const int only = number_from_environment("ZORTAV_TEST_CASE", -1);
  for (const std::uint64_t seed : seeds()) {
    for (int number = only < 0 ? 0 : only; number < (only < 0 ? cases : only + 1); ++number) {
      Trial trial(seed, number, routine.boundaries);
      routine.run(trial);
      const std::string difference = trial.difference();
      ASSERT_EQ(difference, "") << routine.name << ": " << trial.description()
                                << "\nto repeat it: ZORTAV_TEST_SEED=" << seed << " ZORTAV_TEST_CASE=" << number;
    }
  }
}

// What the comparison must see, one thing at a time.
TEST(Comparison, SeesAChangedElementAGuardWordAndASumOutOfItsBound) {
  const auto difference = [](const std::function<void(Trial&, Reals&)>& change) {
    Trial trial(1, 0, {});
    change(trial, trial.reals({1.0, -0.0, nan}));
    return trial.difference();
  };
  EXPECT_EQ(difference([](Trial&, Reals& x) { x.data()[2] = -nan; }), "");
  EXPECT_NE(difference([](Trial&, Reals& x) { x.data()[0] = std::nextafter(1.0, 2.0); }), "");
  EXPECT_NE(difference([](Trial&, Reals& x) { x.data()[1] = 0.0; }), "");
  EXPECT_NE(difference([](Trial&, Reals& x) { x.data()[2] = 0; }), "");
  EXPECT_NE(difference([](Trial&, Reals& x) { x.data()[3] = 0; }), "");
  EXPECT_NE(difference([](Trial&, Reals& x) { x.data()[-1] = 0; }), "");
  const Within one_of_three = sum_of(3, 1.0L, 1.0L);
  EXPECT_EQ(difference([&](Trial&, Reals& x) {
              x.data()[0] = 1 + 3 * 0x1p-52;
              x.expect_within(0, one_of_three);
            }),
            "");
  for (const double wrong : {1 + 4 * 0x1p-52, nan, inf}) {
    EXPECT_NE(difference([&](Trial& trial, Reals&) { trial.expect(one_of_three, wrong); }), "") << wrong;
  }
  EXPECT_NE(difference([](Trial& trial, Reals&) { trial.expect(sum_of(3, inf, inf), -inf); }), "");
  EXPECT_NE(difference([](Trial& trial, Reals&) { trial.expect(1.0, std::nextafter(1.0, 2.0)); }), "");
}

INSTANTIATE_TEST_SUITE_P(Routines, Differential, testing::ValuesIn(all_routines()), [](const auto& entry) {
  std::string name = entry.param.name;
  std::replace(name.begin(), name.end(), '.', '_');
  return name;
});

}  // namespace
}  // namespace zortest
