// SPDX-License-Identifier: MIT
// The log of a process whose user the system does not know, and who may not write everywhere.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "ZORTavListingServices.h"
#include "support/files.h"

namespace {

constexpr int32_t access_denied = static_cast<int32_t>(0x80070005U);

[[noreturn]] void set_as_another_user(uid_t user, const std::string& folder) {
  std::filesystem::permissions(folder, std::filesystem::perms::all);
  if (setuid(user) != 0) {
    std::_Exit(2);
  }
  const bool refused = ZORTavListingServices::Set("/") == access_denied;
  const bool open = ZORTavListingServices::Set(folder.c_str()) == 0;
  std::fprintf(stderr, "%s\n", ZORTavListingServices::GetFileName().GetText());
  std::_Exit(refused && open ? 0 : 1);
}

TEST(ListingUser, IsUnknown) {
  if (getuid() != 0) {
    GTEST_SKIP() << "only the superuser becomes another";
  }
  constexpr uid_t nobody_knows = 1234567;
  const zortav::test::ScratchFolder folder;
  EXPECT_EXIT(set_as_another_user(nobody_knows, folder.path()), testing::ExitedWithCode(0),
              "^TavrinSolverLog_UnknownUser_");
}

}  // namespace
