// SPDX-License-Identifier: MIT
// The whole program where standard streams are closed and disks are full.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <string>

#include "modal_analysis/program_run.h"
#include "small_disk.h"

namespace {

namespace fs = std::filesystem;
using zortest::SmallDisk;

// Each test begins with a run without faults, whose results are those of the runs with them.
class ProgramFaults : public modaltest::Program {
 protected:
  void SetUp() override {
    modaltest::Program::SetUp();
    good_run("--mesh 6x3 --modes 2 --out good");
  }
  int run_with(const std::string& out, const std::string& err, const std::string& arguments = "") const {
    return zortest::run_program(folder_.string(), "ADL_ODT_OUT=log", MODAL_PROGRAM, "--mesh 6x3 --modes 2 " + arguments,
                                out, err);
  }
  void expect_results(const std::string& folder) const {
    for (const std::string file : {"/modes.vtk", "/modes.svg"}) {
      EXPECT_EQ(read("good" + file), read(folder + file)) << folder << file;
    }
  }
  std::string log() const {
    std::string text;
    for (const auto& entry : fs::directory_iterator(path("log"))) {
      text += read("log/" + entry.path().filename().string());
    }
    return text;
  }
};

class ProgramOnSmallDisk : public ProgramFaults {
 protected:
  void SetUp() override {
    if (!SmallDisk::refusal().empty()) {
      GTEST_SKIP() << SmallDisk::refusal();
    }
    ProgramFaults::SetUp();
  }
};

TEST_F(ProgramFaults, StandardOutputThatTakesNothingIsTold) {
  fs::create_directory(path("log"));
  for (const std::string out : {"&-", "/dev/full"}) {
    EXPECT_EQ(run_with(out, "stderr.txt", "--out quiet"), 1) << out;
    EXPECT_EQ(read("stderr.txt"), "modal_analysis: standard output cannot be written\n") << out;
    expect_results("quiet");
    fs::remove_all(path("quiet"));
  }
  // The second run had a standard output to redirect.
  EXPECT_NE(log().find("Peak memory of the arrays"), std::string::npos);
}

TEST_F(ProgramFaults, AClosedStandardErrorCostsNothing) {
  fs::create_directory(path("log"));
  EXPECT_EQ(run_with("stdout.txt", "&-", "--out silent"), 0);
  expect_results("silent");
  EXPECT_NE(read("stdout.txt").find("no mode was missed"), std::string::npos);
  EXPECT_NE(log().find("Modes found: 2\n"), std::string::npos);
  EXPECT_EQ(run_with("&-", "&-", "--out silent"), 1);
  expect_results("silent");
  EXPECT_EQ(run_with("stdout.txt", "&-", "--modes none"), 1);
}

TEST_F(ProgramOnSmallDisk, AFullDiskForTheResultsLeavesNothingOfThem) {
  const SmallDisk disk(16 * 1024);
  EXPECT_EQ(run_with("stdout.txt", "stderr.txt", "--out " + (disk / "modes-out")), 1);
  EXPECT_TRUE(std::regex_match(read("stderr.txt").substr(read("stderr.txt").find('\n') + 1),
                               std::regex("modal_analysis: .*/modes\\.(vtk|svg): the file cannot be written\n")))
      << read("stderr.txt");
  EXPECT_TRUE(fs::is_empty(disk.path()));
}

TEST_F(ProgramOnSmallDisk, AFullOrReadOnlyDiskForTheLogDoesNotEndTheRun) {
  fs::create_directory(path("log"));
  const SmallDisk full(4 * 1024);
  zortav::test::write(full / "other", "x");
  const auto run_on = [this](const SmallDisk& disk) {
    const modaltest::Outcome outcome = run("--mesh 6x3 --modes 2 --out logged", "ADL_ODT_OUT=" + disk.path());
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_NE(outcome.out.find("no mode was missed"), std::string::npos);
    EXPECT_EQ(outcome.out.find("SUBSPACE"), std::string::npos) << "the log's lines came to the terminal";
    expect_results("logged");
    return outcome.err;
  };
  EXPECT_EQ(run_on(full), "");
  ASSERT_TRUE(full.make_read_only());
  EXPECT_EQ(run_on(full),
            "modal_analysis: ADL_ODT_OUT: no solver log can be opened in the folder " + full.path() + "\n");
}

}  // namespace
