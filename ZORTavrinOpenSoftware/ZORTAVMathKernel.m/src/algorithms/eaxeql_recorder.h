// SPDX-License-Identifier: MIT
// Holds the rotations of eaxeql back until a batch is worth a pass over V. The rotations do not depend on V, and every
// element of V still sees them in their order.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "algorithms/eigen_kernel_table.h"

namespace zortav {

class RotationRecorder {
 public:
  RotationRecorder(std::size_t n, double* v) : n_(n), v_(v) {}
  RotationRecorder(const RotationRecorder&) = delete;
  RotationRecorder& operator=(const RotationRecorder&) = delete;

  // Begins a run of at most `wanted` rotations from the plane (top, top + 1) downward; at least one, and as many as are
  // granted must be filled in before the next call.
  Rotation* begin(std::size_t top, std::size_t wanted, std::size_t& granted) {
    granted = std::min(wanted, longest_run);
    const std::size_t low = top + 1 - granted;
    const std::size_t high = top + 2;
    if (runs_ == most_runs || rotations_ + granted > most_rotations ||
        std::max(high_, high) - std::min(low_, low) > panel_columns) {
      flush();
    }
    low_ = std::min(low_, low);
    high_ = std::max(high_, high);
    Rotation* const at = rotation_ + rotations_;
    rotations_ += granted;
    run_[runs_++] = {top, granted, at};
    return at;
  }

  void flush() {
    if (runs_ != 0) {
      eigen_kernels().rotate(n_, v_, {run_, runs_, low_, high_ - low_});
    }
    runs_ = 0;
    rotations_ = 0;
    low_ = SIZE_MAX;
    high_ = 0;
  }

 private:
  // 192 KiB and 12 KiB of the caller's stack.
  static constexpr std::size_t most_rotations = 12288;
  static constexpr std::size_t most_runs = 512;
  static constexpr std::size_t longest_run = 2048;
  static_assert(longest_run < panel_columns && longest_run <= most_rotations);

  std::size_t n_;
  double* v_;
  std::size_t runs_ = 0;
  std::size_t rotations_ = 0;
  // The columns low_ .. high_ - 1 are touched by what is recorded.
  std::size_t low_ = SIZE_MAX;
  std::size_t high_ = 0;
  RotationRun run_[most_runs];
  Rotation rotation_[most_rotations];
};

// A call may take 384 KiB of a thread's stack. What is not left to the recorder and to the panel that its rotations are
// applied in is ample for the frames themselves.
static_assert(sizeof(RotationRecorder) + panel_columns * panel_rows * sizeof(double) <= (384 - 16) * 1024);

}  // namespace zortav
