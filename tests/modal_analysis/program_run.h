// SPDX-License-Identifier: MIT
// The whole program, run as a child in a folder of its own.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <string>

#include "modal_analysis/temporary_folder.h"
#include "test_system.h"

namespace modaltest {

inline const std::string symmetric = "%%MatrixMarket matrix coordinate real symmetric\n";

struct Outcome {
  int status = -1;
  std::string out;
  std::string err;
};

class Program : public TemporaryFolder {
 protected:
  Outcome run(const std::string& arguments, const std::string& environment = "") const {
    const int status =
        zortest::run_program(folder_.string(), environment, MODAL_PROGRAM, arguments, "stdout.txt", "stderr.txt");
    return {status, read("stdout.txt"), read("stderr.txt")};
  }
  // What a run prints that found its modes and missed none.
  std::string good_run(const std::string& arguments, const std::string& environment = "") const {
    const Outcome outcome = run(arguments, environment);
    EXPECT_EQ(outcome.status, 0) << arguments;
    EXPECT_EQ(outcome.err, "") << arguments;
    EXPECT_NE(outcome.out.find("no mode was missed"), std::string::npos) << outcome.out;
    return outcome.out;
  }
  // Status 1, nothing but one line on standard error, which matches; no results and no folder of them.
  void expect_refused(const std::string& arguments, const std::string& pattern) const {
    const Outcome outcome = run(arguments + " --out refused");
    EXPECT_EQ(outcome.status, 1) << arguments;
    EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << arguments << " said: " << outcome.err;
    EXPECT_TRUE(std::regex_search(outcome.err, std::regex("^modal_analysis: .*" + pattern)))
        << arguments << " said: " << outcome.err;
    EXPECT_EQ(outcome.out.find("  mode"), std::string::npos) << arguments << " printed results";
    EXPECT_FALSE(std::filesystem::exists(path("refused"))) << arguments << " left a folder";
  }
};

// What reads Matrix Market files, which not every build of the program can.
class ProgramMatrices : public Program {};

}  // namespace modaltest
