// SPDX-License-Identifier: MIT
// The whole program under mpirun.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "modal_analysis/gmsh_text.h"
#include "modal_analysis/temporary_folder.h"
#include "modes/modal_solver.h"
#include "structure/tapered_membrane.h"

namespace {

namespace fs = std::filesystem;

constexpr double most_seconds = 10.0;  // until every process has ended after a fault

struct Outcome {
  int status = -1;
  std::string out;
  std::string err;
  double seconds = 0.0;
};

class Components : public modaltest::TemporaryFolder {
 protected:
  Outcome run(int ranks, const std::string& arguments) const {
    std::string command = "'" MPIRUN "' -n ";
    command += std::to_string(ranks) + " '" COMPONENT_PROGRAM "' " + arguments;
    return shell(command);
  }
  Outcome shell(const std::string& command) const {
    write("command.sh", command + "\n");
    const auto start = std::chrono::steady_clock::now();
    Outcome outcome;
    outcome.status = zortest::run_program(folder_.string(), "", "/bin/bash", "command.sh", "out.txt", "err.txt");
    outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    outcome.out = read("out.txt");
    outcome.err = read("err.txt");
    return outcome;
  }
  // One line of the program's own, which matches; mpirun may add its own.
  void expect_refused(int ranks, const std::string& arguments, const std::string& pattern) const {
    const Outcome outcome = run(ranks, arguments);
    EXPECT_NE(outcome.status, 0) << arguments;
    EXPECT_LT(outcome.seconds, most_seconds) << arguments;
    std::vector<std::string> own;
    std::istringstream lines(outcome.err);
    for (std::string line; std::getline(lines, line);) {
      if (line.rfind("component_modes: ", 0) == 0) {
        own.push_back(line);
      }
    }
    ASSERT_EQ(own.size(), 1U) << arguments << " said: " << outcome.err;
    EXPECT_TRUE(std::regex_search(own[0], std::regex("^component_modes: " + pattern))) << own[0];
    EXPECT_EQ(outcome.out.find("  mode"), std::string::npos) << arguments << " printed results";
  }
  std::string part_file(const std::string& name, const modal::Mesh& mesh, double dy = 0.0) const {
    modal::Mesh moved = mesh;
    for (auto& node : moved.node) {
      node[1] += dy;
    }
    write(name, modaltest::gmsh_text(moved));
    return ' ' + name;
  }
};

// The table of modes without its columns of published values.
std::vector<double> frequencies(const std::string& out) {
  std::vector<double> found;
  std::istringstream lines(out.substr(std::min(out.find("  mode"), out.size())));
  std::string line;
  std::getline(lines, line);
  for (int mode = 0; std::getline(lines, line) && !line.empty();) {
    double hertz = 0.0;
    std::istringstream(line) >> mode >> hertz;
    found.push_back(hertz);
  }
  return found;
}

// The last column but `from_right` of the row of the largest, or of rank 0 ...
double figure(const std::string& out, const std::string& row, int from_right) {
  std::smatch match;
  const std::regex pattern(std::string("\n +").append(row) + " +\\S+ +\\S+ +(\\S+) +(\\S+)\n");
  return std::regex_search(out, match, pattern) ? std::stod(match[static_cast<std::size_t>(2 - from_right)]) : -1.0;
}

// Ranks share out the same work: not a digit depends on their number, while memory and messages do.
TEST_F(Components, AreThoseOfTheWholeStructureOnAnyNumberOfRanks) {
  struct Quiet : modal::Progress {
    void step(const char* /*phase*/, double /*done*/, double /*total*/) override {}
  } quiet;
  const modal::Structure whole = modal::tapered_membrane(41, 16);
  const auto expected = modal::find_lowest_modes(whole.stiffness, whole.mass, 6, quiet).eigenvalue;
  std::vector<double> first;
  double peak_before = 1e9;
  for (const int ranks : {1, 2, 4}) {
    const Outcome outcome = run(ranks, "--mesh 41x16 --parts 4 --modes 6 --out modes");
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    const std::vector<double> found = frequencies(outcome.out);
    ASSERT_EQ(found.size(), 6U) << outcome.out;
    for (std::size_t i = 0; i < 6; ++i) {
      const double hertz = std::sqrt(expected[i]) / (2 * 3.14159265358979323846);
      EXPECT_NEAR(found[i], hertz, 5e-4 * hertz) << "mode " << i + 1;
    }
    first = first.empty() ? found : first;
    EXPECT_EQ(found, first) << ranks << " ranks";
    EXPECT_NE(outcome.out.find("Largest residual"), std::string::npos);
    const double peak = figure(outcome.out, "largest", 1);
    EXPECT_LT(peak, 0.9 * peak_before) << ranks << " ranks\n" << outcome.out;
    peak_before = peak;
    EXPECT_EQ(figure(outcome.out, "largest", 0) > 0.0, ranks > 1) << outcome.out;
  }
  for (const char* part : {"1", "4"}) {
    EXPECT_TRUE(fs::exists(path(std::string("modes/modes-part-").append(part).append(".vtk"))));
  }
}

TEST_F(Components, RanksAndPartsNeedNotBeEqual) {
  const std::vector<double> few = frequencies(run(2, "--mesh 11x4 --parts 3").out);
  EXPECT_EQ(few.size(), 6U);
  EXPECT_EQ(few, frequencies(run(4, "--mesh 11x4 --parts 3").out)) << "a rank without a part";
}

TEST_F(Components, PartsFromFilesAreThoseOfTheModel) {
  std::string files;
  for (int p = 0; p < 3; ++p) {
    files += part_file(std::to_string(p).append(".msh"), modal::tapered_membrane_part(11, 4, 3, p));
  }
  const Outcome outcome = run(2, "--mesh-file" + files);
  const std::vector<double> found = frequencies(run(2, "--mesh 11x4 --parts 3").out);
  ASSERT_EQ(found.size(), 6U);
  std::istringstream lines(outcome.out.substr(std::min(outcome.out.find("  mode"), outcome.out.size())));
  std::string line;
  std::getline(lines, line);
  for (const double hertz : found) {
    int mode = 0;
    double eigenvalue = 0.0;
    double own = 0.0;
    lines >> mode >> eigenvalue >> own;
    std::getline(lines, line);
    EXPECT_NEAR(own, hertz, 1e-4) << outcome.err << outcome.out;
  }
}

TEST_F(Components, FaultsEndEveryProcessWithOneLine) {
  const modal::Mesh root = modal::tapered_membrane_part(4, 1, 2, 0);
  const modal::Mesh tip = modal::tapered_membrane_part(4, 1, 2, 1);
  const std::string good = part_file("root.msh", root);
  expect_refused(2, "--mesh-file" + good + part_file("gap.msh", tip, 0.1),
                 "rank 0: part 1 .root.msh.: a joint does not close: node [0-9]+ of part 1 and node [0-9]+ of part 2");
  expect_refused(2, "--mesh-file" + good + part_file("far.msh", tip, 50), "rank 1: part 2 .far.msh.: .*not joined");
  expect_refused(2, "--mesh-file" + good + part_file("fine.msh", modal::tapered_membrane_part(4, 2, 2, 1)),
                 "rank [01]: part [12] .*no counterpart in part");
  expect_refused(2, "--mesh-file" + good + part_file("corner.msh", tip, 3), "rank 1: part 2 .corner.msh.: .*singular");
  expect_refused(2, "--mesh-file" + good + " none.msh", "rank 1: part 2 .none.msh.: ");
  expect_refused(2, "--mesh-file" + part_file("tip.msh", tip), "rank 0: part 1 .tip.msh.: .*singular");
  expect_refused(2, "--mesh 2x1 --parts 2 --part-modes 1 --modes 9", "rank 0: --modes 9: ");
  expect_refused(2, "--mesh 4x4 --parts 5", "--parts 5: expected");
  expect_refused(2, "--mesh 0x4", "--mesh 0x4: ");
}

TEST_F(Components, EndWhenARankIsKilled) {
  const Outcome outcome = shell("'" MPIRUN "' -n 4 '" COMPONENT_PROGRAM
                                "' --mesh 300x150 --parts 4 & launcher=$!\n"
                                "children() { cat /proc/$launcher/task/*/children; }\n"
                                "until [ $(children | wc -w) -ge 4 ]; do sleep 0.05; done\n"
                                "sleep 0.5; victim=$(children | awk '{print $3}')\n"
                                "kill -9 $victim; wait $launcher; status=$?\n"
                                "pgrep -s 0 -x component_mode && echo left\n"
                                "exit $status");
  EXPECT_NE(outcome.status, 0);
  EXPECT_LT(outcome.seconds, most_seconds);
  EXPECT_NE(outcome.err.find("signal 9"), std::string::npos) << outcome.err;
  EXPECT_EQ(outcome.out.find("left"), std::string::npos);
  EXPECT_EQ(outcome.out.find("  mode"), std::string::npos);
}

}  // namespace
