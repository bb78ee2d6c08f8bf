// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <system_error>

#include "ZORDescriptor.h"
#include "ZORFile.h"
#include "support/files.h"
#include "test_system.h"

namespace {

using zortav::test::contents;

constexpr int32_t missing = static_cast<int32_t>(0x80070002U);

std::string joined(const char* folder, const char* name) {
  ZORUnicodeString path = "unchanged";
  return ZORMakePath(folder, name, path) == 0 ? path.GetText() : "refused";
}

// Opens, writes and closes.
int32_t put(const std::string& file, const char* mode, const std::string& text) {
  int32_t descriptor = 0;
  const int32_t status = ZORFOpen(file.c_str(), mode, &descriptor);
  if (status < 0) {
    EXPECT_EQ(descriptor, -1);
    return status;
  }
  const auto written = write(descriptor, text.data(), static_cast<unsigned>(text.size()));
  EXPECT_EQ(ZORFClose(descriptor), 0);
  return static_cast<int32_t>(written);
}

TEST(File, Access) {
  const zortav::test::ScratchFolder folder;
  zortav::test::write(folder / "file", "");
  for (const int32_t mode : {0, 2, 4, 6}) {
    EXPECT_EQ(ZORFileAccess(folder.path().c_str(), mode, 0), 0);
    EXPECT_EQ(ZORFileAccess((folder / "file").c_str(), mode, 0), 0);
    EXPECT_EQ(ZORFileAccess((folder / "none").c_str(), mode, 0), missing);
  }
  EXPECT_EQ(ZORFileAccess(folder.path().c_str(), 1, 0), ZORStatusInvalidArgument);
  EXPECT_EQ(ZORStatusCause(ZORFileAccess((folder / "file/below").c_str(), 0, 0)), ZORCausePathNotFound);
  const int32_t too_long = ZORFileAccess((folder / std::string(300, 'x')).c_str(), 0, 0);
  EXPECT_TRUE(too_long < 0 && ZORStatusCause(too_long) != ZORCauseFileNotFound);
}

TEST(File, IdenticalHoweverWritten) {
  const zortav::test::ScratchFolder folder;
  std::filesystem::create_directories(folder / "a");
  std::error_code no_links;
  std::filesystem::create_directory_symlink(folder / "a", folder / "link", no_links);
  EXPECT_EQ(ZORIdenticaleFile((folder / "a").c_str(), (folder / (no_links ? "a/." : "link")).c_str()), 0);
  EXPECT_EQ(ZORIdenticaleFile((folder / "a").c_str(), (folder / "a/../a/.").c_str()), 0);
  EXPECT_EQ(ZORIdenticaleFile((folder / "a").c_str(), folder.path().c_str()), 1);
  EXPECT_EQ(ZORIdenticaleFile((folder / "a").c_str(), (folder / "none").c_str()), missing);
}

TEST(File, PathOfFolderAndName) {
  EXPECT_EQ(joined("/a", "b"), std::string("/a") + zortest::path_separator + "b");
  EXPECT_EQ(joined("/a/", "b"), "/a/b");
  EXPECT_EQ(joined("", "b"), "b");
  EXPECT_EQ(joined("/a", ""), "refused");
}

TEST(File, OpenModes) {
  const zortav::test::ScratchFolder folder;
  const std::string file = folder / "file";
  EXPECT_EQ(put(file, "r", ""), missing);
  EXPECT_EQ(put(file, "a+c", "one,"), 4);
  EXPECT_EQ(put(file, "a", "two"), 3);
  EXPECT_EQ(contents(file), "one,two");
  EXPECT_EQ(put(file, "r+", "ONE"), 3);
  EXPECT_EQ(contents(file), "ONE,two");
  EXPECT_EQ(put(file, "w", "three"), 5);
  EXPECT_EQ(contents(file), "three");
  EXPECT_EQ(put(file, "r", "x"), -1);
  for (const char* mode : {static_cast<const char*>(nullptr), "", "x", "+", "ab", "a+,ccs=UTF-8"}) {
    EXPECT_EQ(put(file, mode, "lost"), ZORStatusInvalidArgument);
  }
  EXPECT_EQ(put(folder.path(), "a+c", "lost"), static_cast<int32_t>(0x80070005U));
  EXPECT_LT(ZORFClose(-1), 0);
  EXPECT_EQ(contents(file), "three");
}

TEST(File, CopyAndDelete) {
  const zortav::test::ScratchFolder folder;
  const std::string from = folder / "from";
  const std::string to = folder / "to";
  const std::string long_text(200000, 'x');
  zortav::test::write(from, long_text);
  const auto own_only = std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;
  std::filesystem::permissions(from, own_only);
  EXPECT_EQ(ZORFCopy(from.c_str(), to.c_str(), 1), 0);
  EXPECT_EQ(contents(to), long_text);
  EXPECT_EQ(std::filesystem::status(to).permissions(), std::filesystem::status(from).permissions());

  zortav::test::write(to, "kept");
  EXPECT_EQ(ZORFCopy(from.c_str(), to.c_str(), 1), ZORStatusFileExists);
  EXPECT_EQ(contents(to), "kept");
  EXPECT_EQ(ZORFCopy(from.c_str(), to.c_str(), 0), 0);
  EXPECT_EQ(contents(to), long_text);
  EXPECT_EQ(ZORFCopy(from.c_str(), from.c_str(), 0), ZORStatusFileExists);
  EXPECT_EQ(contents(from), long_text);

  EXPECT_EQ(ZORDeleteFile(to.c_str()), 0);
  EXPECT_EQ(ZORDeleteFile(to.c_str()), missing);
  EXPECT_LT(ZORDeleteFile(folder.path().c_str()), 0);
  EXPECT_EQ(ZORFCopy(to.c_str(), (folder / "other").c_str(), 1), missing);
  EXPECT_EQ(ZORFCopy(folder.path().c_str(), (folder / "other").c_str(), 1), static_cast<int32_t>(0x80070005U));
  EXPECT_FALSE(std::filesystem::exists(folder / "other")) << "an incomplete copy";
}

[[noreturn]] void open_without_standard_streams(const std::string& file) {
  for (const int standard : {0, 1, 2}) {
    close(standard);
  }
  int32_t descriptor = 0;
  ZORFOpen(file.c_str(), "a+c", &descriptor);
  const bool inherited = zortest::is_inherited(descriptor);
  const bool nothing_left_behind = !zortest::is_open(0);
  std::_Exit(descriptor > 2 && !inherited && nothing_left_behind ? 0 : 1);
}

TEST(File, ClosedStandardStreamsAreNotTakenUp) {
  const zortav::test::ScratchFolder folder;
  EXPECT_EXIT(open_without_standard_streams(folder / "log"), testing::ExitedWithCode(0), "");
}

}  // namespace
