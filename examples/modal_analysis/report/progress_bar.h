// SPDX-License-Identifier: MIT
// A bar on the terminal for phases that take longer than a second.
#pragma once

#include <functional>
#include <ostream>
#include <string>

#include "modes/modal_solver.h"

namespace modal {

class ProgressBar : public Progress {
 public:
  // Nothing is ever written when the stream is no terminal. seconds: a clock that only goes forward.
  ProgressBar(std::ostream& out, bool terminal, std::function<double()> seconds);
  ~ProgressBar() override { clear(); }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  void step(const char* phase, double done, double total) override;
  // Takes the bar off the terminal.
  void clear();

 private:
  std::ostream& out_;
  bool terminal_;
  std::function<double()> seconds_;
  std::string phase_;
  double began_ = 0.0;
  double drawn_ = 0.0;
  bool visible_ = false;
};

}  // namespace modal
