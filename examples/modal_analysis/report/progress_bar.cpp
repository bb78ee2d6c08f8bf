// SPDX-License-Identifier: MIT
#include "report/progress_bar.h"

#include <algorithm>
#include <utility>

namespace modal {
namespace {

constexpr double patience = 1.0;        // seconds before a phase gets a bar
constexpr double refresh_period = 0.1;  // seconds
constexpr int bar_width = 32;

}  // namespace

ProgressBar::ProgressBar(std::ostream& out, bool terminal, std::function<double()> seconds)
    : out_(out), terminal_(terminal), seconds_(std::move(seconds)) {}

void ProgressBar::step(const char* phase, double done, double total) {
  if (!terminal_) {
    return;
  }
  const double now = seconds_();
  if (phase_ != phase) {
    clear();
    phase_ = phase;
    began_ = now;
  }
  if (now - began_ < patience || (visible_ && now - drawn_ < refresh_period)) {
    return;
  }
  const double part = total > 0 ? std::clamp(done / total, 0.0, 1.0) : 0.0;
  const auto filled = static_cast<std::size_t>(part * bar_width);
  out_ << "\r\033[K" << phase_ << "  [" << std::string(filled, '#') << std::string(bar_width - filled, '.') << "]  "
       << static_cast<int>(100 * part) << " %" << std::flush;
  drawn_ = now;
  visible_ = true;
}

void ProgressBar::clear() {
  if (visible_) {
    out_ << "\r\033[K" << std::flush;
    visible_ = false;
  }
}

}  // namespace modal
