// SPDX-License-Identifier: MIT
// The solver log on disks that are full or read-only, and when its file is taken away: no crash, no line lost that
// could be written, none where it does not belong.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <sstream>
#include <string>

#include "ZORTAVListing.h"
#include "ZORTavListingServices.h"
#include "small_disk.h"
#include "support/files.h"
#include "test_system.h"

namespace {

namespace fs = std::filesystem;
using Log = ZORTavListingServices;
using zortav::test::captured;
using zortav::test::contents;
using zortav::test::ScratchFolder;
using zortest::SmallDisk;

constexpr int32_t system_failure(std::uint32_t cause) {
  return static_cast<int32_t>(0x80070000U | cause);
}
constexpr int32_t file_not_found = system_failure(2);
constexpr int32_t write_protected = system_failure(19);
constexpr int32_t disk_full = system_failure(112);

constexpr std::size_t kibibyte = 1024;

class LogFaults : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(Log::Reset(), 0); }

  static std::string file() { return std::string(Log::GetDirectory().GetText()) + "/" + Log::GetFileName().GetText(); }
  std::string folder(const std::string& name) const {
    fs::create_directory(folder_ / name);
    return folder_ / name;
  }
  ScratchFolder folder_;
};

class LogOnSmallDisk : public LogFaults {
 protected:
  void SetUp() override {
    if (!SmallDisk::refusal().empty()) {
      GTEST_SKIP() << SmallDisk::refusal();
    }
  }
};

TEST_F(LogOnSmallDisk, AFullDiskCutsTheLogWhereItIsFullAndNoLaterLine) {
  const SmallDisk disk(64 * kibibyte);
  zortav::test::write(disk / "other", std::string(32 * kibibyte, 'x'));
  ASSERT_EQ(Log::Set(disk.path().c_str()), 0);
  const std::string line(99, 'l');
  std::string expected;
  EXPECT_EQ(captured(stdout,
                     [&] {
                       std::fputs("before,", stdout);
                       for (int i = 0; i < 1000; ++i) {
                         ehprint(line.c_str());
                         expected += line + "\n";
                       }
                       std::fputs("after", stdout);
                     }),
            "before,after");
  EXPECT_FALSE(std::ferror(stdout)) << "the log's fault is not standard output's";
  const std::string cut = contents(file());
  EXPECT_EQ(cut.size(), 32 * kibibyte);
  EXPECT_EQ(cut, expected.substr(0, cut.size()));
  // Once there is room again, so is the log.
  fs::remove(disk / "other");
  EXPECT_EQ(captured(stdout, [] { ehprint("room again"); }), "");
  EXPECT_EQ(contents(file()), cut + "room again\n");
  EXPECT_EQ(Log::Reset(), 0);
}

TEST_F(LogOnSmallDisk, AFullDiskRefusesANewLogAndTheListingGoesToStandardOutput) {
  const SmallDisk disk(4 * kibibyte, 1);
  zortav::test::write(disk / "other", "x");
  EXPECT_EQ(Log::Set(disk.path().c_str()), disk_full);
  EXPECT_EQ(Log::GetDescriptor(), -1);
  EXPECT_EQ(captured(stdout, [] { ehprint("to standard output"); }), "to standard output\n");
}

// In a child: what follows a failure in the middle of a move is not to be undone.
[[noreturn]] void move_to_full_disk(const std::string& here, const std::string& full) {
  bool good = Log::Set(here.c_str()) == 0;
  const std::string name = Log::GetFileName().GetText();
  const std::string text(8 * kibibyte, 'l');
  ehprint(text.c_str());
  good = Log::Set(full.c_str()) == disk_full && good;
  good = contents(here + "/" + name) == text + "\n" && fs::is_empty(full) && good;
  good = captured(stdout, [] { ehprint("to standard output"); }) == "to standard output\n" && good;
  std::_Exit(good ? 0 : 1);
}

TEST_F(LogOnSmallDisk, AMoveToAFullDiskLeavesTheOldFileAndNoPartOfTheNew) {
  const SmallDisk disk(4 * kibibyte);
  EXPECT_EXIT(move_to_full_disk(folder("here"), disk.path()), testing::ExitedWithCode(0), "");
}

TEST_F(LogOnSmallDisk, AReadOnlyFolderIsRefused) {
  const SmallDisk disk(4 * kibibyte);
  ASSERT_TRUE(disk.make_read_only());
  EXPECT_EQ(Log::Set(disk.path().c_str()), write_protected);
  EXPECT_EQ(Log::GetDescriptor(), -1);
  ASSERT_EQ(Log::Set(folder("here").c_str()), 0);
  EXPECT_EQ(Log::Set(disk.path().c_str()), write_protected);
  ehprint("still here");
  EXPECT_EQ(contents(file()), "still here\n");
}

TEST_F(LogFaults, TheLogFollowsItsFileWhereverItIsMoved) {
  ASSERT_EQ(Log::Set(folder("here").c_str()), 0);
  ehprint("one");
  fs::rename(file(), folder_ / "renamed");
  ehprint("two");
  fs::rename(folder_ / "here", folder_ / "there");
  ehprint("three");
  EXPECT_EQ(contents(folder_ / "renamed"), "one\ntwo\nthree\n");
  // The folder of the log is not to be found any more: nothing is moved, nothing closed.
  EXPECT_EQ(Log::Set(folder("elsewhere").c_str()), file_not_found);
  EXPECT_EQ(captured(stdout, [] { ehprint("four"); }), "");
  EXPECT_EQ(contents(folder_ / "renamed"), "one\ntwo\nthree\nfour\n");
}

TEST_F(LogFaults, ADeletedLogIsWrittenToAndClosedAsIfItWereThere) {
  ASSERT_EQ(Log::Set(folder("here").c_str()), 0);
  const std::string deleted = file();
  fs::remove(deleted);
  EXPECT_EQ(captured(stdout, [] { ehprint("into the deleted file"); }), "");
  EXPECT_FALSE(fs::exists(deleted));
  EXPECT_EQ(Log::Reset(), 0);
  ASSERT_EQ(Log::Set(folder("here").c_str()), 0);
  ehprint("a new one");
  EXPECT_EQ(contents(file()), "a new one\n");
}

// Each of several processes makes its share in the one folder.
TEST_F(LogFaults, AThousandLogsInOneFolder) {
  constexpr int processes = 8;
  constexpr int logs = 125;
  const std::string here = folder("here");
  const auto line = [](int process, int i) {
    std::ostringstream text;
    text << process << ' ' << i;
    return text.str();
  };
  const auto make = [&](int process) {
    bool good = true;
    for (int i = 0; i < logs; ++i) {
      good = Log::Set(here.c_str()) == 0 && good;
      ehprint(line(process, i).c_str());
      good = Log::Reset() == 0 && good;
    }
    std::_Exit(good ? 0 : 1);
  };
  for (int process = 0; process < processes; ++process) {
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
      make(process);
    }
  }
  for (int process = 0; process < processes; ++process) {
    int status = -1;
    wait(&status);
    EXPECT_EQ(status, 0);
  }
  std::set<std::string> lines;
  for (const auto& entry : fs::directory_iterator(here)) {
    lines.insert(contents(entry.path().string()));
  }
  EXPECT_EQ(lines.size(), static_cast<std::size_t>(processes * logs));
  for (int process = 0; process < processes; ++process) {
    EXPECT_EQ(lines.count(line(process, logs - 1) + "\n"), 1U);
  }
}

}  // namespace
