// SPDX-License-Identifier: MIT
// The solver log, the messages of the catalog, the limits of memory, and the condensation, of the whole program.
#include <gtest/gtest.h>

#include <vector>

#include "modal_analysis/gmsh_text.h"
#include "modal_analysis/program_run.h"
#include "structure/tapered_membrane.h"

namespace {

namespace fs = std::filesystem;
using modaltest::Outcome;
using modaltest::symmetric;

const std::string error_banner = "\\*+ ERROR \\*+\n";

class ProgramServices : public modaltest::Program {
 protected:
  // The listing of a run with the log in the folder "log".
  std::string log(const std::string& arguments, int status, const std::string& environment = "") {
    fs::remove_all(path("log"));
    fs::create_directory(path("log"));
    last_ = run(arguments, environment + " ADL_ODT_OUT=log");
    EXPECT_EQ(last_.status, status) << last_.err;
    std::string name;
    for (const auto& entry : fs::directory_iterator(path("log"))) {
      EXPECT_EQ(name, "");
      name = entry.path().filename().string();
    }
    EXPECT_EQ(name.rfind("TavrinSolverLog_", 0), 0U) << name;
    return read("log/" + name);
  }
  static void expect_in_order(const std::string& text, const std::vector<std::string>& patterns) {
    std::string rest = text;
    for (const std::string& pattern : patterns) {
      std::smatch found;
      ASSERT_TRUE(std::regex_search(rest, found, std::regex(pattern))) << pattern << " in:\n" << text;
      rest = found.suffix();
    }
  }

  Outcome last_;
};

class ProgramServicesMatrices : public ProgramServices {};

TEST_F(ProgramServices, TheListingHasWhatTheRunDidAndTheTerminalHasNoneOfIt) {
  const std::string plain = good_run("--mesh 6x3 --modes 4");
  expect_in_order(log("--mesh 6x3 --modes 4", 0), {"MODAL ANALYSIS +Year : \\d{4}",
                                                   "tapered membrane, 6 x 3",
                                                   "lowest modes.*: 4\n",
                                                   "unknowns +132\n",
                                                   "instruction set +(SSE4|AVX2|AVX512)",
                                                   "ORDERING AND FACTOR",
                                                   "entries of L +[1-9]\\d+",
                                                   "smallest pivot ratio +\\d\\.\\d+e-0[1-6]\n",
                                                   "SUBSPACE ITERATION",
                                                   "\n +1 +12 +12 +4 ",
                                                   "\n +[2-9] +12 +12 +4 +\\d\\.\\d\\de-",
                                                   "MODES\n",
                                                   "\n +1 +7\\.8\\d+e\\+04 +44\\.6\\d+ +\\d\\.\\d\\de-",
                                                   "Sturm check: 4 eigenvalues.*no mode was missed\n",
                                                   "Modes found: 4\n",
                                                   "PHASES\n",
                                                   "factorization +\\d",
                                                   "total +\\d",
                                                   "Peak memory of the arrays: \\d+\\.\\d MB\n",
                                                   "Wrote modes.vtk and modes.svg"});
  EXPECT_EQ(last_.err, "");
  EXPECT_EQ(last_.out.substr(0, last_.out.find("\n  phase")), plain.substr(0, plain.find("\n  phase")));
  EXPECT_EQ(last_.out.find("SUBSPACE"), std::string::npos);
  EXPECT_NE(last_.out.find(std::string("Listing: log") + zortest::path_separator + "TavrinSolverLog_"),
            std::string::npos);
  EXPECT_NE(plain.find("Peak memory of the arrays: "), std::string::npos);
}

TEST_F(ProgramServices, FailuresAreCatalogMessagesInTheUsersLanguage) {
  write("bad.msh", "$MeshFormat\n2 0 8\n");
  expect_in_order(log("--mesh-file bad.msh", 1),
                  {error_banner + "Reading of the model\nLine 2 of bad.msh cannot be used: "});
  EXPECT_EQ(last_.err.find("modal_analysis: bad.msh, line 2: "), 0U) << last_.err;
  EXPECT_EQ(last_.err.find('\n'), last_.err.size() - 1);
  expect_in_order(log("--mesh-file bad.msh", 1, "LC_ALL=fr_FR.UTF-8"),
                  {error_banner + "Lecture du modèle\nLa ligne 2 de bad.msh ne peut pas être utilisée : "});
  expect_in_order(log("--modes none", 1), {error_banner, "cannot be carried out as asked: --modes none"});
  // A catalog of the user's stands before the program's; without any, the number is told.
  fs::create_directory(path("own"));
  write("own/ModalAnalysisError_en.json", R"({"ERR_0102": {"diagnostic": "Own text for /p21"}})");
  expect_in_order(log("--modes none", 1, "ZOR_MESSAGE_CATALOG_PATH=own"), {error_banner + "Own text for --modes none"});
  const Outcome without = run("--modes none", "ADL_ODT_OUT=missing");
  EXPECT_EQ(without.status, 1);
  expect_in_order(without.err, {"ADL_ODT_OUT: no solver log .*missing\n", "--modes none"});
}

TEST_F(ProgramServicesMatrices, FailuresNameThePlaceInTheFile) {
  write("bad.mtx", symmetric + "2 2 2\n1 1 2\n2 2 2..5\n");
  write("singular.mtx", symmetric + "2 2 3\n1 1 1\n2 2 1\n2 1 1\n");
  expect_in_order(log("--stiffness bad.mtx", 1),
                  {error_banner + "Reading of the model\nLine 4 of bad.mtx cannot be used: .*2\\.\\.5"});
  expect_in_order(log("--stiffness singular.mtx --modes 1", 1, "LC_ALL=de_DE"),
                  {error_banner, "equation [12] of singular.mtx was refused with status 6, value 0 "});
}

TEST_F(ProgramServices, AnArrayAboveTheLimitEndsTheRun) {
  expect_in_order(log("--mesh 64x32 --out refused", 1, "TAV_MAX_ALLOC=1"),
                  {"\\*+ WARNING \\*+\nAllocation of arrays\nAn array of \\d+ kilobytes was refused: 1000 kilobytes",
                   "\\*+ ERROR \\*+\nAllocation of arrays\n", "TAV_MAX_ALLOC allows 1.02 MB"});
  EXPECT_FALSE(fs::exists(path("refused")));
  for (const std::string limit : {"1", "2"}) {
    const Outcome refused = run("--mesh 64x32 --out refused", "TAV_MAX_ALLOC=" + limit);
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.err.rfind("modal_analysis: not enough memory for a problem of this size: an array of ", 0), 0U);
    EXPECT_EQ(refused.err.find('\n'), refused.err.size() - 1) << refused.err;
    EXPECT_EQ(refused.out.find("WARNING"), std::string::npos) << refused.out;
    EXPECT_FALSE(fs::exists(path("refused")));
  }
}

// Springs of 6 and 3 from unknown 2, which another of 9 holds, to 1 and 3: S_33 = 3 − 3²/18, S_11 = 6 − 6²/18.
TEST_F(ProgramServicesMatrices, CondensesToTheUnknownsOfAFile) {
  write("K.mtx", symmetric + "3 3 5\n1 1 6\n2 1 -6\n2 2 18\n3 2 -3\n3 3 3\n");
  write("r.txt", "3\n\n 1 \n");
  const std::string listing = log("--stiffness K.mtx --condense r.txt --out S", 0);
  expect_in_order(listing, {"condensed to unknowns: 2\n", "ORDERING", "CONDENSED STIFFNESS\n", " 3 +1\n", " 3 +2.5\n",
                            " 1 +-1 +4\n", "Unknowns retained: 2\n"});
  expect_in_order(last_.out, {"condensed to 2 of 3 unknowns\n", " 3 +1\n", " 3 +2.5\n", " 1 +-1 +4\n"});
  EXPECT_NE(read("S/condensed.mtx").find("array real symmetric\n"), std::string::npos);
  expect_in_order(read("S/condensed.mtx"), {"%   3\n%   1\n2 2\n2.5\n-1\n4\n"});
}

// A mesh file's node numbers are its own (here 10, 20, ...), and the numbers of its nodes lead to the same matrix.
TEST_F(ProgramServices, CondensesToTheNodesOfAMesh) {
  const modal::Mesh mesh = modal::tapered_membrane(4, 2).mesh;
  write("a.msh", modaltest::gmsh_text(mesh));
  std::string numbers;
  std::string tags;
  for (const std::size_t node : {mesh.node.size(), mesh.node.size() - 3}) {
    numbers += std::to_string(node) + " y\n" + std::to_string(node) + " x\n";
    tags += std::to_string(10 * node) + " y\n" + std::to_string(10 * node) + " x\n";
  }
  write("numbers.txt", numbers);
  write("tags.txt", tags);
  expect_in_order(log("--mesh 4x2 --condense numbers.txt --out N", 0),
                  {"condensed to unknowns: 4\n", "ORDERING", "CONDENSED STIFFNESS\n", "Unknowns retained: 4\n"});
  EXPECT_EQ(run("--mesh-file a.msh --condense tags.txt --out T").status, 0);
  const std::string whole = read("N/condensed.mtx");
  EXPECT_EQ(read("T/condensed.mtx").substr(read("T/condensed.mtx").find("\n4 4\n")),
            whole.substr(whole.find("\n4 4\n")));
}

// Files of retained unknowns that are refused, and what is said of them beside matrices and beside a mesh.
struct Retained {
  std::string text, of_matrix, of_mesh;
};
const std::vector<Retained> refused_files{
    {"", "line 1: the file ends", "line 1: the file ends"},
    {"2\n\n3\n", "line 3: the unknown '3' is not", "line 1: expected 'NODE x'"},
    {"0\n", "line 1: the unknown '0' is not", "line 1: expected"},
    {"1\n2\n1\n", "line 3: .* line 1 already", "line 1: expected"},
    {"30 x\n30 z\n", "line 1: expected the number", "line 2: the direction 'z'"},
    {"30 x\n1 y\n", "line 1: expected", "line 2: node 1 is fixed"},
    {"30 x\n38 x\n", "line 1: expected", "line 2: the node '38' is not"},
    {"30 x\n29 y\n30 x\n", "line 1: expected", "line 3: .* line 1 already"},
};

TEST_F(ProgramServices, RefusesRetainedNodesThatAreNotThere) {
  for (const Retained& file : refused_files) {
    write("r.txt", file.text);
    expect_refused("--mesh 4x2 --condense r.txt", "r.txt, " + file.of_mesh);
  }
  expect_refused("--condense none.txt", "none.txt: no such file");
  expect_refused("--condense r.txt --modes 2", "");
}

TEST_F(ProgramServicesMatrices, RefusesRetainedUnknownsThatAreNotThere) {
  write("K.mtx", symmetric + "2 2 3\n1 1 1\n2 2 1\n2 1 1\n");
  write("chain.mtx", symmetric + "3 3 4\n1 1 1\n2 2 1\n2 1 1\n3 3 1\n");
  for (const Retained& file : refused_files) {
    write("r.txt", file.text);
    expect_refused("--stiffness K.mtx --condense r.txt", "r.txt, " + file.of_matrix);
  }
  write("r.txt", "3\n");
  expect_refused("--stiffness chain.mtx --condense r.txt", "equation [12]: pivot status 6.*with the retained unknowns");
  expect_in_order(log("--stiffness chain.mtx --condense r.txt", 1),
                  {"Static condensation\n", "equation [12] of chain"});
}

}  // namespace
