// SPDX-License-Identifier: MIT
// The log of a user, in a folder, whose names are beyond the old code pages.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "ZORSystem.h"
#include "ZORTavListingServices.h"
#include "support/files.h"

namespace {

constexpr const wchar_t* wide_user = L"Ren\u00E9e \u6771";
constexpr const char* user =
    "Ren\xC3\xA9"
    "e \xE6\x9D\xB1";

TEST(ListingUser, AndFolderMayHaveAnyName) {
  SetEnvironmentVariableW(L"WINEUSERNAME", wide_user);
  wchar_t name[64] = L"";
  DWORD length = 64;
  if (GetUserNameW(name, &length) == FALSE || std::wstring(name) != wide_user) {
    GTEST_SKIP() << "a process of this Windows cannot be another's";
  }
  char login[64] = "";
  EXPECT_EQ(ZORGetLoginName(login, sizeof login), 0);
  EXPECT_STREQ(login, user);
  // Cut between characters.
  EXPECT_EQ(ZORGetLoginName(login, 5), 0);
  EXPECT_STREQ(login, "Ren");

  const zortav::test::ScratchFolder scratch;
  const std::u8string folder = std::filesystem::path(scratch.path()).u8string() + u8"/Mod\u00E8les \u03A9";
  std::filesystem::create_directory(folder);
  ASSERT_EQ(ZORTavListingServices::Set(std::string(folder.begin(), folder.end()).c_str()), 0);
  const std::string file = ZORTavListingServices::GetFileName().GetText();
  EXPECT_EQ(file.rfind("TavrinSolverLog_" + std::string(user) + "_", 0), 0U) << file;
  const std::filesystem::path opened = std::filesystem::path(folder) / std::u8string(file.begin(), file.end());
  EXPECT_TRUE(std::filesystem::exists(opened));
  EXPECT_EQ(ZORTavListingServices::Reset(), 0);
}

}  // namespace
