// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>

#include "report/mode_table.h"
#include "report/number_text.h"
#include "report/progress_bar.h"

namespace {

TEST(NumberText, NoiseNeverReachesTheDigits) {
  EXPECT_EQ(modal::fixed_text(-0.00049, 3), "0.000");
  EXPECT_EQ(modal::fixed_text(1e300, 0).size(), 301U);
  EXPECT_EQ(modal::frequency_text(9999.999991), "9999.99999");
  EXPECT_EQ(modal::frequency_text(12345.678912), "12345.6789");
  EXPECT_EQ(modal::frequency_text(3.5e12), "3500000000000");
  EXPECT_EQ(modal::short_text(1.9999999999), "2");
  EXPECT_EQ(modal::bound_text(0.0), "< 1e-07");
  EXPECT_EQ(modal::bound_text(1.1e-7), "< 1e-06");
  EXPECT_EQ(modal::bound_text(std::numeric_limits<double>::quiet_NaN()), "1 or more");
}

TEST(ModeTable, PublishedValuesStandWhereThereAreSome) {
  modal::Structure structure;
  modal::ModalResult result;
  result.eigenvalue = {394784.17604357434, 1579136.7041742974};  // 100 and 200 Hz
  result.residual = {1e-12, 1e-3};
  const auto printed = [&] {
    std::ostringstream out;
    modal::print_mode_table(out, structure, result);
    return out.str();
  };
  EXPECT_EQ(printed().find("published"), std::string::npos);
  EXPECT_NE(printed().find("     1         394784         100.00000     < 1e-07\n"), std::string::npos) << printed();
  structure.published_frequency = {100.1};
  EXPECT_NE(printed().find("     1         100.00000            100.10     -0.100 %     < 1e-07\n"
                           "     2         200.00000                 -            -     < 1e-02\n"),
            std::string::npos)
      << printed();
}

TEST(ModeTable, TheCountOfPivotsDecidesWhetherModesWereMissed) {
  modal::ModalResult result;
  result.below_shift = 6;
  for (const int found : {5, 6, 7}) {
    result.found_below_shift = found;
    std::ostringstream out;
    modal::print_missed_check(out, result);
    const std::string verdict = found == 6 ? "no mode was missed" : "MODES WERE MISSED";
    EXPECT_NE(out.str().find(verdict), std::string::npos) << out.str();
  }
}

TEST(ProgressBar, ShowsOnlyLongPhasesAndOnlyOnATerminal) {
  double now = 0;
  const auto clock = [&now] { return now; };
  std::ostringstream file;
  std::ostringstream terminal;
  {
    modal::ProgressBar silent(file, false, clock);
    modal::ProgressBar bar(terminal, true, clock);
    const auto step = [&](double time, const char* phase, double done, double total) {
      now = time;
      bar.step(phase, done, total);
      silent.step(phase, done, total);
      return terminal.str();
    };
    EXPECT_EQ(step(0.0, "order", 0, 1), "");
    EXPECT_EQ(step(0.9, "order", 0.9, 1), "");
    EXPECT_EQ(step(1.0, "factor", 0, 10), "");
    const std::string drawn = step(3.0, "factor", 5, 10);
    EXPECT_NE(drawn.find("factor  [################................]  50 %"), std::string::npos);
    EXPECT_EQ(step(3.05, "factor", 6, 10), drawn) << "drawn again too soon";
    step(9.0, "factor", 12, 0);  // a total that is not known
  }
  EXPECT_EQ(file.str(), "");
  const std::string text = terminal.str();
  EXPECT_EQ(text.substr(text.size() - 4), "\r\033[K") << "the bar is left on the terminal";
}

}  // namespace
