// SPDX-License-Identifier: MIT
// Every allocation of a build is refused once, and every one from some point on.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdlib>

#include "spatial_search/octree_oracle.h"
#include "support/refused_allocations.h"

namespace {

using zortest::allocations_left;
using zortest::refusals_left;
using Tree = zortest::CloudTree<ZORSamNeighborTree>;

TEST(OctreeMemory, ARefusedAllocationIsMadeUpForOrLeavesAnEmptyTree) {
  zortest::Random random(1);
  for (const int kind : {zortest::uniform, zortest::clustered, zortest::duplicates, zortest::not_finite}) {
    const zortest::Cloud cloud = zortest::make_cloud(kind, 250, random);
    const auto build = [&cloud](Tree& tree) { return tree.Build(cloud.data(), 250, 3, nullptr, 1e-200, 15); };
    zortest::OctreeOracle whole(cloud, 3, nullptr, 1e-200, 15);
    for (const int refusals : {1, 1000000}) {
      int made_up_for = 0;
      bool refused = true;
      for (int k = 0; refused; ++k) {
        Tree tree;
        allocations_left = k;
        refusals_left = refusals;
        const std::int32_t status = build(tree);
        refused = refusals_left < refusals;
        allocations_left = -1;
        if (status == 0) {
          made_up_for += refused ? 1 : 0;
          ASSERT_NO_FATAL_FAILURE(whole.expect_same(tree.root())) << k;
          ASSERT_EQ(tree.GetNbLevels(), whole.levels);
        } else {
          ASSERT_EQ(status, ZORSamStatusOutOfMemory) << k;
          ASSERT_EQ(tree.root(), nullptr);
          ASSERT_EQ(build(tree), 0) << "the failed build cannot be repeated";
        }
      }
      EXPECT_EQ(made_up_for, refusals == 1 ? 2 : 0) << "the two work arrays can be done without, nothing else can";
    }
  }
}

// The address space is limited in a child process; the sanitizers need more of it than there is.
TEST(OctreeMemory, ACapacityBeyondAllMemory) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "not with AddressSanitizer";
#endif
  const auto build_in_little_memory = [] {
    const rlimit limit{1UL << 32, 1UL << 32};
    ::setrlimit(RLIMIT_AS, &limit);
    const zortest::Cloud cloud{{0, 0, 0}, {1, 1, 1}};
    Tree tree;
    const std::int32_t status = tree.Build(cloud.data(), 2, 0xFFFFFFFF, nullptr, 0.1, 9);
    std::exit(status == ZORSamStatusOutOfMemory && tree.root() == nullptr ? 0 : 1);
  };
  EXPECT_EXIT(build_in_little_memory(), testing::ExitedWithCode(0), "");
}

}  // namespace
