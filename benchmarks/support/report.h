// SPDX-License-Identifier: MIT
// The table: measures the cases that are wanted and prints each as a line at once.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "support/case.h"
#include "support/measure.h"

namespace zorbench {

struct Options {
  std::vector<std::string> routines;  // beginnings of names; none: all
  bool quick = false;
  std::string csv;  // file, or empty
};

class Report {
 public:
  explicit Report(const Options& options);
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;
  ~Report();

  bool quick() const { return options_.quick; }
  bool wants(const std::string& routine) const;
  void measure(const Case& c);
  // How many targets are met, and the others, the furthest missed first.
  void summary() const;

 private:
  struct Miss {
    double share;  // of the target
    std::string text;
  };
  void print_line(const Case& c, const std::vector<Timing>& timings);
  void print_csv(const Case& c, const std::vector<Timing>& timings) const;
  std::string verdicts(const Case& c, const std::vector<Timing>& timings);

  Options options_;
  std::FILE* csv_ = nullptr;
  std::size_t met_ = 0;
  std::size_t undecided_ = 0;
  std::vector<Miss> missed_;
};

}  // namespace zorbench
