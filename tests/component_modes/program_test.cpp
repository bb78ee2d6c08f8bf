// SPDX-License-Identifier: MIT
#include <cmath>
#include <regex>

#include "component_modes/components.h"
#include "modes/modal_solver.h"
#include "structure/tapered_membrane.h"

namespace {

namespace fs = std::filesystem;
using componenttest::column_of_modes;
using componenttest::Components;
using componenttest::Outcome;

std::vector<double> frequencies(const std::string& out) {
  return column_of_modes(out, 1);
}

// A row's last column but `from_right`; row: "largest", or a rank.
double figure(const std::string& out, const std::string& row, int from_right) {
  std::smatch match;
  const std::regex pattern(std::string("\n +").append(row) + " +\\S+ +\\S+ +(\\S+) +(\\S+)\n");
  return std::regex_search(out, match, pattern) ? std::stod(match[static_cast<std::size_t>(2 - from_right)]) : -1.0;
}

void expect_near(const std::vector<double>& found, const std::vector<double>& eigenvalue, double relative) {
  ASSERT_EQ(found.size(), eigenvalue.size());
  for (std::size_t i = 0; i < found.size(); ++i) {
    const double hertz = std::sqrt(eigenvalue[i]) / (2 * 3.14159265358979323846);
    EXPECT_NEAR(found[i], hertz, relative * hertz) << "mode " << i + 1;
  }
}

std::vector<double> eigenvalues_of_membrane(int nx, int ny) {
  struct Quiet : modal::Progress {
    void step(const char* /*phase*/, double /*done*/, double /*total*/) override {}
  } quiet;
  const modal::Structure whole = modal::tapered_membrane(nx, ny);
  return modal::find_lowest_modes(whole.stiffness, whole.mass, 6, quiet).eigenvalue;
}

double largest_residual(const std::string& out) {
  std::smatch residual;
  return std::regex_search(out, residual, std::regex("Largest residual: (\\S+) ")) ? std::stod(residual[1]) : 1e9;
}

// With every mode of every part nothing is left out: the parts are the structure, in other coordinates. With few of them
// an iteration of the whole by way of its parts, or three, come closer than many modes; without a joint at once.
TEST_F(Components, ComeToTheStructureByAllPartModesOrByRefinement) {
  struct Case {
    const char* arguments;
    double error, residual;
  };
  const std::vector<double> expected = eigenvalues_of_membrane(12, 4);
  for (const auto& [arguments, error, residual] :
       {Case{"--parts 3 --part-modes 100000 --refine 0", 1.5e-7, 1e-6},  // as it is printed
        {"--parts 12 --part-modes 100000 --refine 0", 1.5e-7, 1e-6},
        {"--parts 1 --part-modes 8 --refine 1", 1.5e-7, 1e-6},
        {"--parts 3 --part-modes 8 --refine 1", 5e-5, 3e-2},
        {"--parts 3 --part-modes 8 --refine 3", 5e-7, 2e-3}}) {
    SCOPED_TRACE(arguments);
    const Outcome outcome = run(2, std::string("--mesh 12x4 ").append(arguments));
    expect_near(frequencies(outcome.out), expected, error);
    EXPECT_LT(largest_residual(outcome.out), residual);
    EXPECT_NE(outcome.out.find("no mode was missed"), std::string::npos);
  }
}

// Ranks share out the same work: not a digit depends on their number, while memory and messages do.
TEST_F(Components, AreThoseOfTheWholeStructureOnAnyNumberOfRanks) {
  const std::vector<double> expected = eigenvalues_of_membrane(41, 16);
  std::vector<double> first;
  double peak_before = 1e9;
  for (const int ranks : {1, 2, 4}) {
    const Outcome outcome = run(ranks, "--mesh 41x16 --parts 4 --modes 6 --out modes");
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    const std::vector<double> found = frequencies(outcome.out);
    expect_near(found, expected, 1e-6);
    first = first.empty() ? found : first;
    EXPECT_EQ(found, first) << ranks << " ranks";
    EXPECT_LT(largest_residual(outcome.out), 1e-2);
    const double peak = figure(outcome.out, "largest", 1);
    EXPECT_LT(peak, 0.9 * peak_before) << ranks << " ranks\n" << outcome.out;
    peak_before = peak;
    EXPECT_EQ(figure(outcome.out, "largest", 0) > 0.0, ranks > 1) << outcome.out;
  }
  for (const char* part : {"1", "4"}) {
    EXPECT_TRUE(fs::exists(path(std::string("modes/modes-part-").append(part).append(".vtk"))));
  }

  const Outcome plain = run(2, "--mesh 41x16 --parts 4 --modes 6 --refine 0");
  const std::vector<double> joined = frequencies(plain.out);
  expect_near(joined, expected, 5e-4);
  EXPECT_GT(joined[5], first[5]) << "the refinement had something to do";
  EXPECT_EQ(plain.out.find("Refined"), std::string::npos);
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
  const std::vector<double> own = column_of_modes(outcome.out, 2);
  const std::vector<double> found = frequencies(run(2, "--mesh 11x4 --parts 3").out);
  ASSERT_EQ(own.size(), 6U) << outcome.err << outcome.out;
  for (std::size_t i = 0; i < own.size(); ++i) {
    EXPECT_NEAR(own[i], found[i], 1e-4);
  }
}

}  // namespace
