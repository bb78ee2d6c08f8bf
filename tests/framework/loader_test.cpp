// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "ZORLoader.h"
#include "test_system.h"

namespace {

bool loaded() {
  return zortest::is_library_loaded("zortav_test_module");
}

TEST(Loader, FindsAnEntryAndNothingElse) {
  const char* const module = "zortav_test_module";  // its folder is in the loader's path
  const char* const missing[][2] = {{module, "no_such_entry"},      {"no_such_library", "zortav_test_entry"},
                                    {"", "zortav_test_entry"},      {"../zortav_test_module", "zortav_test_entry"},
                                    {nullptr, "zortav_test_entry"}, {module, nullptr}};
  for (const auto& names : missing) {
    const LibraryHandler none = ZORGetEntryPoint(names[0], names[1], "", 0, 1, 0);
    EXPECT_TRUE(none.entry == nullptr && none.library == nullptr);
  }
  EXPECT_FALSE(loaded()) << "a library without the entry is released";

  const LibraryHandler found = ZORGetEntryPoint(module, "zortav_test_entry", "", 0, 1, 0);
  ASSERT_NE(found.entry, nullptr);
  EXPECT_EQ(reinterpret_cast<int (*)()>(found.entry)(), 4711);
  EXPECT_TRUE(loaded());
}

}  // namespace
