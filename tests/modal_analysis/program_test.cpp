// SPDX-License-Identifier: MIT
// The whole program, run as a child.
#include <gtest/gtest.h>

#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "modal_analysis/gmsh_text.h"
#include "modal_analysis/program_run.h"
#include "structure/tapered_membrane.h"

namespace {

namespace fs = std::filesystem;
using modaltest::Outcome;
using modaltest::Program;
using modaltest::ProgramMatrices;
using modaltest::symmetric;
using Texts = std::vector<std::string>;

// The column of frequencies of the table of modes: the second of the built-in model, the third of matrices.
Texts frequencies(const std::string& out, int column) {
  Texts texts;
  std::istringstream in(out);
  for (std::string line; std::getline(in, line);) {
    std::istringstream words(line);
    int mode = 0;
    std::string word;
    if (words >> mode) {
      for (int c = 1; c < column; ++c) {
        words >> word;
      }
      texts.push_back(word);
    }
  }
  return texts;
}

// What must not depend on the machine: all but the level, the threads and the times.
std::string lasting(const std::string& out) {
  return std::regex_replace(out.substr(0, out.find("\n  phase")), std::regex("  (instruction set|threads) .*\n"), "");
}

std::string matrix_market(const modal::SymmetricMatrix& matrix) {
  std::ostringstream text;
  text.precision(17);
  text << "%%MatrixMarket matrix coordinate real symmetric\n";
  text << matrix.order << ' ' << matrix.order << ' ' << matrix.entries() << '\n';
  for (std::size_t i = 1, p = 0; i < matrix.row_end.size(); ++i) {
    for (; p < static_cast<std::size_t>(matrix.row_end[i]); ++p) {
      text << i << ' ' << matrix.column[p] << ' ' << matrix.value[p] << '\n';
    }
  }
  return text.str();
}

// The reference figures are those of an independent finite-element program with the same meshes and element.
TEST_F(Program, FindsTheFrequenciesOfTheBenchmark) {
  EXPECT_EQ(frequencies(good_run(""), 2),
            (Texts{"44.62284", "130.03434", "162.69822", "246.05307", "379.89827", "391.43580"}));
  EXPECT_EQ(frequencies(good_run("--mesh 32x16"), 2),
            (Texts{"44.61902", "130.01621", "162.69177", "245.99689", "379.73459", "391.41279"}));
}

TEST_F(Program, PrintsAndWritesTheSameAtEveryLevelAndThreadCount) {
  const std::string command = "--mesh 12x5 --modes 10 --out ";
  const std::string first = good_run(command + "first --threads 1", "TAV_INSTRUCTION_SET=SSE4");
  EXPECT_NE(first.find("instruction set  SSE4"), std::string::npos);
  for (const std::string level : {"SSE4", "AVX2", "AVX512"}) {
    for (const std::string threads : {"1", "3"}) {
      SCOPED_TRACE(level + ", threads " + threads);
      fs::remove_all(path("modes"));
      const std::string again = good_run(command + "modes --threads " + threads, "TAV_INSTRUCTION_SET=" + level);
      EXPECT_EQ(lasting(again), lasting(first));
      EXPECT_NE(again.find("threads          " + threads + "\n"), std::string::npos);
      for (const std::string name : {"/modes.vtk", "/modes.svg"}) {
        EXPECT_EQ(read("modes" + name), read("first" + name));
        EXPECT_GT(fs::file_size(path("modes" + name)), 1000U);
      }
    }
  }
}

TEST_F(ProgramMatrices, MatricesFromFilesGiveTheSameFrequencies) {
  const modal::Structure structure = modal::tapered_membrane(6, 3);
  write("K.mtx", matrix_market(structure.stiffness));
  write("M.mtx", matrix_market(structure.mass));
  const std::string files = good_run("--stiffness K.mtx --mass M.mtx --modes 7 --out modes");
  EXPECT_EQ(frequencies(files, 3), frequencies(good_run("--mesh 6x3 --modes 7"), 2));
  const std::string sizes = std::to_string(structure.stiffness.order) + " 7\n";
  EXPECT_NE(read("modes/modes.mtx").find(sizes), std::string::npos);
  EXPECT_FALSE(fs::exists(path("modes/modes.vtk")));
}

TEST_F(Program, PartsAndMeshFilesGiveTheSameFrequencies) {
  const Texts whole = frequencies(good_run(""), 2);
  EXPECT_EQ(frequencies(good_run("--parts 4"), 2), whole);
  EXPECT_EQ(frequencies(good_run("--parts 3 --mesh 16x8"), 2), whole);
  write("a.msh", modaltest::gmsh_text(modal::tapered_membrane(16, 8).mesh));
  EXPECT_EQ(frequencies(good_run("--mesh-file a.msh --out file"), 3), whole);
  EXPECT_TRUE(fs::exists(path("file/modes.svg")));
  write("a.msh", "$MeshFormat\n2 0 8\n");
  expect_refused("--mesh-file a.msh", "a.msh, line 2:");
}

TEST_F(ProgramMatrices, WithoutMassAndNumberOfModes) {
  write("D.mtx", symmetric + "4 4 4\n1 1 9\n2 2 1\n3 3 9\n4 4 4\n");
  EXPECT_EQ(frequencies(good_run("--stiffness D.mtx"), 2), (Texts{"1", "4", "9", "9"}));
  write("one.mtx", "%%MatrixMarket matrix array integer general\n1 1\n16\n");
  EXPECT_EQ(frequencies(good_run("--stiffness one.mtx"), 2), Texts{"16"});
}

TEST_F(ProgramMatrices, RefusesBadFilesInOneLineThatNamesThePlace) {
  write("good.mtx", symmetric + "2 2 3\n1 1 2\n2 2 2\n2 1 1\n");
  write("bad.mtx", symmetric + "2 2 2\n1 1 2\n2 2 2..5\n");
  expect_refused("--stiffness bad.mtx", "bad.mtx, line 4:.*2\\.\\.5");
  expect_refused("--stiffness good.mtx --mass bad.mtx", "bad.mtx, line 4:");
  expect_refused("--stiffness none.mtx", "none.mtx");
  expect_refused("--stiffness good.mtx --mass none.mtx", "none.mtx");
  write("large.mtx", symmetric + "3 3 3\n1 1 2\n2 2 2\n3 3 1\n");
  expect_refused("--stiffness good.mtx --mass large.mtx", "large.mtx.*order 3.*order 2");
  expect_refused("--stiffness good.mtx --modes 3", "--modes 3.*2 unknowns");
  // Singular, indefinite, and with a negative diagonal.
  for (const std::string entries : {"1 1 1\n2 2 1\n2 1 1\n", "1 1 1\n2 2 1\n2 1 2\n", "1 1 1\n2 2 -1\n2 1 0\n"}) {
    write("bad.mtx", symmetric + "2 2 3\n" + entries);
    expect_refused("--modes 1 --stiffness bad.mtx", "bad.mtx: equation [12]: pivot status (6|34),");
  }
  write("ratio.mtx", symmetric + "2 2 2\n1 1 4\n2 2 -5\n");
  expect_refused("--modes 1 --stiffness ratio.mtx", "equation 2: pivot status 34, pivot -1 times its initial");
}

TEST_F(Program, RefusesBadOptionsAndFolders) {
  write("K.mtx", symmetric + "1 1 1\n1 1 1\n");
  for (const char* arguments : {"--mesh 16",
                                "--mesh 0x8",
                                "--mesh 16x2001",
                                "--mesh 4x4x4",
                                "--mesh 4x4 --stiffness K.mtx",
                                "--mass K.mtx",
                                "--modes 0",
                                "--modes six",
                                "--modes 2.5",
                                "--modes",
                                "--mesh 1x1 --modes 11",
                                "--threads 0",
                                "--threads 1.5",
                                "--stiffness ''",
                                "--unknown",
                                "stray",
                                "--parts 0",
                                "--parts 17",
                                "--mesh 3x2 --parts 4",
                                "--parts 2 --stiffness K.mtx",
                                "--mesh-file ''",
                                "--mesh-file a.msh --mesh 2x2",
                                "--mesh-file none.msh"}) {
    expect_refused(arguments, "");
  }
  write("file", "");
  for (const std::string folder : {"file/below", "file", "/proc/modes-out", "''"}) {
    const Outcome outcome = run("--mesh 2x2 --modes 2 --out " + folder);
    EXPECT_EQ(outcome.status, 1) << folder;
    EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << folder << " said: " << outcome.err;
    EXPECT_EQ(outcome.out, "") << folder;
  }
  const Outcome help = run("--help");
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("--stiffness"), std::string::npos);
}

TEST_F(Program, ReplacesTheFilesOfAnEarlierRunAndLeavesNothingElse) {
  for (const std::string mesh : {"2x2", "3x2"}) {
    good_run("--modes 2 --out results --mesh " + mesh);
  }
  good_run("--modes 2 --mesh 2x2 --out Gr\xC3\xB6n");  // not of plain letters only
  EXPECT_NE(read("results/modes.vtk").find("3 x 2"), std::string::npos);
  EXPECT_EQ(std::distance(fs::directory_iterator(path("results")), fs::directory_iterator()), 2);
}

}  // namespace
