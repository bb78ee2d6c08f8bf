// SPDX-License-Identifier: MIT
// What a forked child may call. Each case begins in a process of its own, whose OpenMP runtime has not been used.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "ZORTAVConfiguration.h"
#include "team_work.h"

namespace {

constexpr int good = 0;
constexpr int wrong = 1;
constexpr int waits_for_ever = 77;

enum class Parent { has_used_no_team, has_used_a_team };
enum class Child { takes_a_team, works_alone };

// Ends with what came out in the child.
[[noreturn]] void fork_and_work(Parent parent, Child child) {
  constexpr unsigned patience_in_seconds = 3;
  constexpr int team = 3;
  int32_t decision = 0;
  ehaldb(&decision);
  const zortest::TeamWork work;
  zortest::set_team(team);
  const std::vector<double> expected = parent == Parent::has_used_a_team ? work.run() : std::vector<double>();
  const pid_t forked = fork();
  if (forked == 0) {
    alarm(patience_in_seconds);
    zortest::set_team(child == Child::works_alone ? 1 : team);
    const std::vector<double> results = work.run();
    alarm(0);
    std::_Exit(zortest::same_bits(results, expected.empty() ? work.alone() : expected) ? good : wrong);
  }
  int status = -1;
  waitpid(forked, &status, 0);
  const bool waited = WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM;
  std::_Exit(waited ? waits_for_ever : WIFEXITED(status) ? WEXITSTATUS(status) : wrong);
}

class ForkedChild : public testing::Test {
 protected:
  ForkedChild() { testing::GTEST_FLAG(death_test_style) = "threadsafe"; }
};

TEST_F(ForkedChild, MayTakeATeamWhereTheParentHasUsedNone) {
  EXPECT_EXIT(fork_and_work(Parent::has_used_no_team, Child::takes_a_team), testing::ExitedWithCode(good), "");
}

TEST_F(ForkedChild, MayWorkAloneWhereTheParentHasUsedATeam) {
  EXPECT_EXIT(fork_and_work(Parent::has_used_a_team, Child::works_alone), testing::ExitedWithCode(good), "");
}

// Here the OpenMP runtime decides: LLVM's makes a new team, GNU's waits for the parent's. Nothing third may happen.
TEST_F(ForkedChild, WaitsOrTakesANewTeamWhereTheParentHasUsedOne) {
  const auto waits_or_works = [](int status) {
    const int code = WIFEXITED(status) ? WEXITSTATUS(status) : wrong;
    std::printf("after the parent's team, a child's %s\n", code == waits_for_ever ? "waits for ever" : "works");
    return code == good || code == waits_for_ever;
  };
  EXPECT_EXIT(fork_and_work(Parent::has_used_a_team, Child::takes_a_team), waits_or_works, "");
}

}  // namespace
