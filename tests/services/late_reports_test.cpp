// SPDX-License-Identifier: MIT
// What a program's last handlers and objects report, when the library's own objects have been destroyed, is written like
// all else, to the log and to standard output.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "ZORTAVErrorReporting.h"
#include "support/files.h"

namespace {

using zortav::test::contents;
using zortav::test::ScratchFolder;

// One report of the program.
std::string reported(const std::string& text) {
  const std::string error = zortav::test::captured(stdout, [&text] {
    const int32_t value = 7;
    int32_t flag = 0;
    ehrprog(&value, text.c_str(), &flag, 0);
  });
  return text + "\nvalue 7\n\n\nreal 0.50\n\n" + error;
}

TEST(LateReports, AreWrittenWhenTheLibrarysObjectsHaveGone) {
  const std::string library = LIBRARY_FILE;
  for (const std::string setting : {"early", "late"}) {
    for (const bool to_log : {false, true}) {
      SCOPED_TRACE(setting + (to_log ? ", to the log" : ", to standard output"));
      const ScratchFolder folder;
      const ScratchFolder log_folder;
      const std::string log = to_log ? log_folder.path() : "";
      // The C library fills what is freed.
      EXPECT_EQ(zortest::run_program(folder.path(), "MALLOC_PERTURB_=165 ADL_ODT_OUT=" + log, LATE_REPORTER,
                                     '"' + library + "\" " + setting, "out", "err"),
                0);
      EXPECT_EQ(contents(folder / "err"), "");
      std::string written = contents(folder / "out");
      for (const auto& file : std::filesystem::directory_iterator(log_folder.path())) {
        EXPECT_EQ(written, "");
        written = contents(file.path().string());
      }
      EXPECT_EQ(written, (setting == "early" ? reported("main") : "") + reported("handler") + reported("last object"));
    }
  }
}

}  // namespace
