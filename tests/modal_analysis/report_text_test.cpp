// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "report/mode_table.h"
#include "report/number_text.h"
#include "report/progress_bar.h"

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(NumberText, NoiseNeverReachesTheDigits) {
  EXPECT_EQ(modal::fixed_text(-0.00049, 3), "0.000");
  EXPECT_EQ(modal::fixed_text(-0.00051, 3), "-0.001");
  EXPECT_EQ(modal::fixed_text(1e300, 0).size(), 301U);
  EXPECT_EQ(modal::frequency_text(44.622841), "44.62284");
  EXPECT_EQ(modal::frequency_text(9999.999991), "9999.99999");
  EXPECT_EQ(modal::frequency_text(12345.678912), "12345.6789");
  EXPECT_EQ(modal::frequency_text(3.5e12), "3500000000000");
  EXPECT_EQ(modal::short_text(1.9999999999), "2");
  EXPECT_EQ(modal::bound_text(0.0), "< 1e-07");
  EXPECT_EQ(modal::bound_text(3e-13), "< 1e-07");
  EXPECT_EQ(modal::bound_text(1.1e-7), "< 1e-06");
  EXPECT_EQ(modal::bound_text(0.5), "< 1e+00");
  EXPECT_EQ(modal::bound_text(1.0), "1 or more");
  EXPECT_EQ(modal::bound_text(nan), "1 or more");
}

TEST(ModeTable, PublishedValuesStandWhereThereAreSome) {
  modal::Structure structure;
  modal::ModalResult result;
  result.eigenvalue = {394784.17604357434, 1579136.7041742974};  // 100 and 200 Hz
  result.residual = {1e-12, 1e-3};
  structure.published_frequency = {100.1};
  std::ostringstream out;
  modal::print_mode_table(out, structure, result);
  EXPECT_NE(out.str().find("     1         100.00000            100.10     -0.100 %     < 1e-07\n"), std::string::npos)
      << out.str();
  EXPECT_NE(out.str().find("     2         200.00000                 -            -     < 1e-02\n"), std::string::npos)
      << out.str();
  structure.published_frequency.clear();
  std::ostringstream plain;
  modal::print_mode_table(plain, structure, result);
  EXPECT_EQ(plain.str().find("published"), std::string::npos);
  EXPECT_NE(plain.str().find("     1         394784         100.00000     < 1e-07\n"), std::string::npos)
      << plain.str();
}

TEST(ModeTable, TheCountOfPivotsDecidesWhetherModesWereMissed) {
  modal::ModalResult result;
  result.below_shift = 6;
  result.found_below_shift = 6;
  std::ostringstream good;
  modal::print_missed_check(good, result);
  EXPECT_NE(good.str().find("no mode was missed"), std::string::npos);
  result.found_below_shift = 5;
  std::ostringstream bad;
  modal::print_missed_check(bad, result);
  EXPECT_NE(bad.str().find("MODES WERE MISSED"), std::string::npos);
}

TEST(ProgressBar, ShowsOnlyLongPhasesAndOnlyOnATerminal) {
  double now = 0;
  const auto clock = [&now] { return now; };
  std::ostringstream file;
  std::ostringstream terminal;
  {
    modal::ProgressBar silent(file, false, clock);
    modal::ProgressBar bar(terminal, true, clock);
    for (int tenth = 0; tenth < 10; ++tenth) {
      now = 0.1 * tenth;
      bar.step("order", now, 1);
      silent.step("order", now, 1);
    }
    EXPECT_EQ(terminal.str(), "");
    now = 1.0;
    bar.step("factor", 0, 10);
    now = 3.0;
    bar.step("factor", 5, 10);
    silent.step("factor", 5, 10);
    EXPECT_NE(terminal.str().find("factor  [################................]  50 %"), std::string::npos);
    const std::size_t drawn = terminal.str().size();
    now = 3.05;
    bar.step("factor", 6, 10);
    EXPECT_EQ(terminal.str().size(), drawn) << "drawn again too soon";
    now = 9.0;
    bar.step("factor", 12, 0);  // a total that is not known
    bar.step("solve", 1, 10);
  }
  EXPECT_EQ(file.str(), "");
  const std::string text = terminal.str();
  EXPECT_EQ(text.substr(text.size() - 4), "\r\033[K") << "the bar is left on the terminal";
}

}  // namespace
