// SPDX-License-Identifier: MIT
// Whatever goes wrong: one line from the rank concerned, every process ends, the status is not 0. How soon they end is
// left to the time limit of the test: on a busy machine the launcher alone may take seconds.
#include <regex>

#include "component_modes/components.h"
#include "structure/tapered_membrane.h"

namespace {

using componenttest::Components;
using componenttest::Outcome;

class ComponentFaults : public Components {
 protected:
  // One line of the program's own, which matches; mpirun may add its own.
  void expect_refused(int ranks, const std::string& arguments, const std::string& pattern) const {
    const Outcome outcome = run(ranks, arguments);
    EXPECT_NE(outcome.status, 0) << arguments;
    std::vector<std::string> own;
    std::istringstream lines(outcome.err);
    for (std::string line; std::getline(lines, line);) {
      if (line.rfind("component_modes: ", 0) == 0) {
        own.push_back(line);
      }
    }
    ASSERT_EQ(own.size(), 1U) << ranks << " ranks, " << arguments << " said: " << outcome.err;
    EXPECT_TRUE(std::regex_search(own[0], std::regex("^component_modes: " + pattern))) << own[0];
    EXPECT_EQ(outcome.out.find("  mode"), std::string::npos) << arguments << " printed results";
  }
};

class RanksOfFaults : public ComponentFaults, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Ranks, RanksOfFaults, testing::Values(1, 2, 4),
                         [](const auto& ranks) { return std::to_string(ranks.param); });

TEST_P(RanksOfFaults, PartsAreNamedByTheRankThatHasThem) {
  const int ranks = GetParam();
  const modal::Mesh tip = modal::tapered_membrane_part(4, 1, 2, 1);
  const std::string good = "--mesh-file" + part_file("root.msh", modal::tapered_membrane_part(4, 1, 2, 0));
  // Of two parts the second is on the last rank of two, on the third of four.
  const std::string second = "rank " + std::to_string(ranks / 2) + ": part 2 ";
  expect_refused(ranks, good + part_file("gap.msh", tip, 0.1),
                 "rank 0: part 1 .root.msh.: a joint does not close: node [0-9]+ of part 1 and node [0-9]+ of part 2");
  expect_refused(ranks, good + part_file("far.msh", tip, 50), second + ".far.msh.: .*not joined");
  expect_refused(ranks, good + part_file("fine.msh", modal::tapered_membrane_part(4, 2, 2, 1)),
                 "rank [0-2]: part [12] .*no counterpart in part");
  expect_refused(ranks, good + part_file("corner.msh", tip, 3), second + ".corner.msh.: .*singular");
  expect_refused(ranks, good + " none.msh", second + ".none.msh.: ");
  expect_refused(ranks, "--mesh-file" + part_file("tip.msh", tip), "rank 0: part 1 .tip.msh.: .*singular");
}

TEST_P(RanksOfFaults, OptionsAreRefusedOnce) {
  const int ranks = GetParam();
  expect_refused(ranks, "--mesh 2x1 --parts 2 --part-modes 1 --modes 9", "rank 0: --modes 9: ");
  expect_refused(ranks, "--mesh 4x4 --parts 5", "--parts 5: expected");
  expect_refused(ranks, "--mesh 4x4 --out /proc/none", "rank 0: /proc/none: files cannot be written");
}

TEST_F(ComponentFaults, EveryOptionIsChecked) {
  for (const auto& [arguments, pattern] :
       std::vector<std::pair<std::string, std::string>>{{"--mesh 0x4", "--mesh 0x4: "},
                                                        {"--modes 0", "--modes 0: expected"},
                                                        {"--part-modes x", "--part-modes x: expected"},
                                                        {"--refine -1", "--refine -1: expected"},
                                                        {"--threads 0", "--threads 0: expected"},
                                                        {"--out ''", "--out: the name is empty"},
                                                        {"--mesh-file ''", "--mesh-file: the name is empty"},
                                                        {"--mesh 4x4 --mesh-file a.msh", ".*excludes"},
                                                        {"--nonsense", ".*nonsense"}}) {
    expect_refused(2, arguments, pattern);
  }
}

// The root, which the others wait for, and another. The command ends when no rank is left.
TEST_F(ComponentFaults, EveryProcessEndsWhenARankIsKilled) {
  for (const char* victim : {"1", "3"}) {
    const Outcome outcome = shell("'" MPIRUN "' -n 4 '" COMPONENT_PROGRAM
                                  "' --mesh 300x150 --parts 4 & launcher=$!\n"
                                  "children() { cat /proc/$launcher/task/*/children; }\n"
                                  "until [ $(children | wc -w) -ge 4 ]; do sleep 0.05; done\n"
                                  "sleep 0.5; ranks=$(children); victim=$(echo $ranks | cut -d ' ' -f " +
                                  std::string(victim) +
                                  ")\n"
                                  "kill -9 $victim; wait $launcher; status=$?\n"
                                  "alive() { grep -qs 'State:[[:space:]]*[^ZX[:space:]]' /proc/$1/status; }\n"
                                  "for rank in $ranks; do while alive $rank; do sleep 0.1; done; done\n"
                                  "exit $status");
    EXPECT_NE(outcome.status, 0);
    EXPECT_NE(outcome.err.find("signal 9"), std::string::npos) << outcome.err;
    EXPECT_EQ(outcome.out.find("  mode"), std::string::npos);
  }
}

}  // namespace
