// SPDX-License-Identifier: MIT
// The whole program, run as a child.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include "structure/tapered_membrane.h"

namespace {

namespace fs = std::filesystem;

struct Outcome {
  int status = -1;
  std::string out;
  std::string err;
};

class Program : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::temp_directory_path() / ("modal-program-" + std::to_string(::getpid()));
    fs::create_directories(folder_);
  }
  void TearDown() override { fs::remove_all(folder_); }

  std::string path(const std::string& name) const { return (folder_ / name).string(); }
  std::string write(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
  }
  static std::string read(const std::string& name) {
    std::ostringstream text;
    text << std::ifstream(name).rdbuf();
    return text.str();
  }
  Outcome run(const std::string& arguments, const std::string& environment = "") const {
    const std::string command = "cd '" + folder_.string() + "' && " + environment + " '" MODAL_PROGRAM "' " +
                                arguments + " >stdout.txt 2>stderr.txt </dev/null";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, read(path("stdout.txt")), read(path("stderr.txt"))};
  }
  // Status 1, nothing but one line on standard error, which holds every part.
  void expect_refused(const std::string& arguments, const std::vector<std::string>& parts) const {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, 1) << arguments;
    EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << arguments << " said: " << outcome.err;
    for (const std::string& part : parts) {
      EXPECT_NE(outcome.err.find(part), std::string::npos) << arguments << " said: " << outcome.err;
    }
    EXPECT_EQ(outcome.out.find("  mode"), std::string::npos) << arguments << " printed results";
  }

  fs::path folder_;
};

// The lines of the table of modes, from its heading to the blank line.
std::vector<std::string> table(const std::string& out) {
  std::vector<std::string> lines;
  std::istringstream in(out.substr(std::min(out.find("\n  mode"), out.size())));
  std::string line;
  std::getline(in, line);
  while (std::getline(in, line) && !line.empty()) {
    lines.push_back(line);
  }
  return lines;
}

// The column of frequencies: the second of the built-in model, the third of matrices.
std::vector<std::string> frequencies(const std::string& out, int column) {
  std::vector<std::string> texts;
  const std::vector<std::string> lines = table(out);
  for (std::size_t i = 1; i < lines.size(); ++i) {
    std::istringstream words(lines[i]);
    std::string word;
    for (int c = 0; c < column; ++c) {
      words >> word;
    }
    texts.push_back(word);
  }
  return texts;
}

// What must not depend on the machine: all but the level, the threads and the times.
std::string lasting(const std::string& out) {
  std::istringstream in(out.substr(0, out.find("\n  phase")));
  std::string text;
  std::string line;
  while (std::getline(in, line)) {
    if (line.rfind("  instruction set", 0) != 0 && line.rfind("  threads", 0) != 0) {
      text += line + "\n";
    }
  }
  return text;
}

std::string matrix_market(const modal::SymmetricMatrix& matrix, bool both_halves) {
  std::ostringstream entries;
  entries.precision(17);
  int count = 0;
  for (std::int32_t i = 1; i <= matrix.order; ++i) {
    for (std::int32_t p = matrix.row_end[static_cast<std::size_t>(i) - 1];
         p < matrix.row_end[static_cast<std::size_t>(i)]; ++p) {
      const std::int32_t j = matrix.column[static_cast<std::size_t>(p)];
      const double value = matrix.value[static_cast<std::size_t>(p)];
      entries << i << ' ' << j << ' ' << value << '\n';
      ++count;
      if (both_halves && i != j) {
        entries << j << ' ' << i << ' ' << value << '\n';
        ++count;
      }
    }
  }
  std::ostringstream text;
  text << "%%MatrixMarket matrix coordinate real " << (both_halves ? "general" : "symmetric") << '\n'
       << matrix.order << ' ' << matrix.order << ' ' << count << '\n'
       << entries.str();
  return text.str();
}

const std::string symmetric = "%%MatrixMarket matrix coordinate real symmetric\n";

// The reference figures are those of an independent finite-element program with the same meshes and element.
TEST_F(Program, FindsTheFrequenciesOfTheBenchmark) {
  struct Case {
    std::string options;
    std::vector<double> reference;
  };
  for (const Case& c : {Case{"", {44.62284, 130.03434, 162.69822, 246.05307, 379.89827, 391.43580}},
                        Case{"--mesh 32x16", {44.61902, 130.01621, 162.69177, 245.99689, 379.73459, 391.41279}}}) {
    const Outcome outcome = run(c.options);
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    const std::vector<std::string> found = frequencies(outcome.out, 2);
    ASSERT_EQ(found.size(), c.reference.size()) << outcome.out;
    for (std::size_t i = 0; i < found.size(); ++i) {
      EXPECT_NEAR(std::stod(found[i]), c.reference[i], 1e-5 * c.reference[i]) << c.options << " mode " << i + 1;
    }
    EXPECT_NE(outcome.out.find("no mode was missed"), std::string::npos) << outcome.out;
  }
}

TEST_F(Program, PrintsAndWritesTheSameAtEveryLevelAndThreadCount) {
  const Outcome first = run("--mesh 12x5 --modes 10 --threads 1 --out first", "TAV_INSTRUCTION_SET=SSE4");
  ASSERT_EQ(first.status, 0) << first.err;
  EXPECT_NE(first.out.find("instruction set  SSE4"), std::string::npos);
  for (const char* environment :
       {"TAV_INSTRUCTION_SET=SSE4", "TAV_INSTRUCTION_SET=AVX2", "TAV_INSTRUCTION_SET=AVX512"}) {
    for (const char* threads : {"1", "3"}) {
      const Outcome again = run(std::string("--mesh 12x5 --modes 10 --out again --threads ") + threads, environment);
      ASSERT_EQ(again.status, 0) << again.err;
      EXPECT_EQ(lasting(again.out), lasting(first.out)) << environment << ", threads " << threads;
      EXPECT_NE(again.out.find(std::string("threads          ") + threads + "\n"), std::string::npos);
      for (const char* name : {"/modes.vtk", "/modes.svg"}) {
        EXPECT_EQ(read(path("again") + name), read(path("first") + name)) << environment << ", threads " << threads;
      }
    }
  }
  EXPECT_GT(fs::file_size(path("first/modes.vtk")), 1000U);
  EXPECT_GT(fs::file_size(path("first/modes.svg")), 1000U);
}

TEST_F(Program, MatricesFromFilesGiveTheSameFrequencies) {
  const modal::Structure structure = modal::tapered_membrane(6, 3);
  write("K.mtx", matrix_market(structure.stiffness, false));
  write("M.mtx", matrix_market(structure.mass, true));
  const Outcome built_in = run("--mesh 6x3 --modes 7");
  const Outcome files = run("--stiffness K.mtx --mass M.mtx --modes 7 --out modes");
  ASSERT_EQ(built_in.status, 0) << built_in.err;
  ASSERT_EQ(files.status, 0) << files.err;
  EXPECT_EQ(frequencies(files.out, 3), frequencies(built_in.out, 2));
  EXPECT_NE(files.out.find("no mode was missed"), std::string::npos);
  std::istringstream modes(read(path("modes/modes.mtx")));
  std::string line;
  while (std::getline(modes, line) && line.front() == '%') {
  }
  EXPECT_EQ(line, std::to_string(structure.stiffness.order) + " 7");
  EXPECT_FALSE(fs::exists(path("modes/modes.vtk")));
}

TEST_F(Program, SmallMatricesHaveTheirExactEigenvalues) {
  // The second difference has the eigenvalues 2 - 2 cos(i pi / (n + 1)); with M missing it stands for the identity.
  const int n = 5;
  std::string text = symmetric + "5 5 9\n";
  for (int i = 1; i <= n; ++i) {
    text += std::to_string(i) + " " + std::to_string(i) + " 2\n";
    text += i < n ? std::to_string(i + 1) + " " + std::to_string(i) + " -1\n" : "";
  }
  write("K.mtx", text);
  const Outcome all = run("--stiffness K.mtx");
  ASSERT_EQ(all.status, 0) << all.err;
  const std::vector<std::string> found = frequencies(all.out, 2);
  ASSERT_EQ(found.size(), 5U) << "all modes where there are fewer than six";
  for (int i = 1; i <= n; ++i) {
    const double exact = 2 - 2 * std::cos(i * std::numbers::pi / (n + 1));
    EXPECT_NEAR(std::stod(found[static_cast<std::size_t>(i) - 1]), exact, 1e-5 * exact);
  }
  write("D.mtx", symmetric + "4 4 4\n1 1 9\n2 2 1\n3 3 9\n4 4 4\n");
  const Outcome diagonal = run("--stiffness D.mtx --modes 4");
  ASSERT_EQ(diagonal.status, 0) << diagonal.err;
  EXPECT_EQ(frequencies(diagonal.out, 2), (std::vector<std::string>{"1", "4", "9", "9"}));
  write("one.mtx", "%%MatrixMarket matrix array integer general\n1 1\n16\n");
  EXPECT_EQ(frequencies(run("--stiffness one.mtx").out, 2), std::vector<std::string>{"16"});
}

TEST_F(Program, RefusesBadFilesInOneLineThatNamesThePlace) {
  write("good.mtx", symmetric + "2 2 3\n1 1 2\n2 2 2\n2 1 1\n");
  write("large.mtx", symmetric + "3 3 3\n1 1 2\n2 2 2\n3 3 1\n");
  write("header.mtx", "%%MatrixMarket vector\n");
  write("number.mtx", symmetric + "2 2 2\n1 1 2\n2 2 2..5\n");
  write("index.mtx", symmetric + "2 2 2\n1 1 2\n3 2 2\n");
  write("oblong.mtx", symmetric + "2 3 2\n1 1 2\n2 2 2\n");
  write("lopsided.mtx", "%%MatrixMarket matrix coordinate real general\n2 2 4\n1 1 2\n2 2 2\n1 2 1\n2 1 1.5\n");
  write("nan.mtx", symmetric + "2 2 2\n1 1 2\n2 2 nan\n");
  write("short.mtx", symmetric + "2 2 3\n1 1 2\n2 2 2\n");
  expect_refused("--stiffness none.mtx --out o", {"none.mtx"});
  expect_refused("--stiffness good.mtx --mass none.mtx --out o", {"none.mtx"});
  expect_refused("--stiffness header.mtx --out o", {"header.mtx, line 1:"});
  expect_refused("--stiffness number.mtx --out o", {"number.mtx, line 4:", "2..5"});
  expect_refused("--stiffness good.mtx --mass index.mtx --out o", {"index.mtx, line 4:"});
  expect_refused("--stiffness oblong.mtx --out o", {"oblong.mtx, line 2:", "not square"});
  expect_refused("--stiffness lopsided.mtx --out o", {"lopsided.mtx, line 6:", "not symmetric"});
  expect_refused("--stiffness nan.mtx --out o", {"nan.mtx, line 4:"});
  expect_refused("--stiffness short.mtx --out o", {"short.mtx, line 4:"});
  expect_refused("--stiffness good.mtx --mass large.mtx --out o", {"large.mtx", "order 3", "order 2"});
  expect_refused("--stiffness good.mtx --modes 3 --out o", {"--modes 3", "2 unknowns"});
  EXPECT_FALSE(fs::exists(path("o"))) << "a refused run left a folder";
}

TEST_F(Program, NamesTheEquationAndTheStatusOfARefusedPivot) {
  write("singular.mtx", symmetric + "3 3 4\n1 1 1\n2 2 1\n2 1 1\n3 3 5\n");
  write("indefinite.mtx", symmetric + "3 3 4\n1 1 1\n2 2 1\n2 1 2\n3 3 5\n");
  write("negative.mtx", symmetric + "2 2 2\n1 1 1\n2 2 -1\n");
  for (const char* name : {"singular.mtx", "indefinite.mtx", "negative.mtx"}) {
    expect_refused(std::string("--modes 1 --out o --stiffness ") + name, {name, "equation ", "pivot status "});
    const std::string said = run(std::string("--modes 1 --stiffness ") + name).err;
    EXPECT_TRUE(said.find("status 6,") != std::string::npos || said.find("status 34,") != std::string::npos) << said;
  }
  write("ratio.mtx", symmetric + "2 2 2\n1 1 4\n2 2 -5\n");
  expect_refused("--modes 1 --out o --stiffness ratio.mtx",
                 {"equation 2: pivot status 34, pivot -1 times its initial"});
  EXPECT_FALSE(fs::exists(path("o")));
}

TEST_F(Program, RefusesBadOptionsAndFolders) {
  write("file", "");
  for (const char* arguments :
       {"--mesh 16", "--mesh 0x8", "--mesh 16x2001", "--mesh 4x4x4", "--mesh 4x4 --stiffness K.mtx", "--mass M.mtx",
        "--modes 0", "--modes six", "--modes 2.5", "--modes", "--mesh 1x1 --modes 11", "--threads 0", "--threads 1.5",
        "--stiffness ''", "--unknown", "stray"}) {
    expect_refused(arguments, {"modal_analysis: "});
  }
  expect_refused("--mesh 2x2 --modes 2 --out file/below", {"file/below"});
  expect_refused("--mesh 2x2 --modes 2 --out file", {"file"});
  expect_refused("--mesh 2x2 --modes 2 --out /proc/modes-out", {"/proc/modes-out"});
  EXPECT_EQ(run("--help").status, 0);
  EXPECT_NE(run("--help").out.find("--stiffness"), std::string::npos);
}

TEST_F(Program, ReplacesTheFilesOfAnEarlierRunAndLeavesNothingElse) {
  for (const char* mesh : {"2x2", "3x2"}) {
    ASSERT_EQ(run(std::string("--modes 2 --out results --mesh ") + mesh).status, 0);
  }
  EXPECT_NE(read(path("results/modes.vtk")).find("3 x 2"), std::string::npos);
  EXPECT_EQ(std::distance(fs::directory_iterator(path("results")), fs::directory_iterator()), 2);
  EXPECT_EQ(run("--modes 2 --mesh 2x2").status, 0);
  EXPECT_FALSE(fs::exists(path("modes.vtk"))) << "files were not asked for";
}

}  // namespace
