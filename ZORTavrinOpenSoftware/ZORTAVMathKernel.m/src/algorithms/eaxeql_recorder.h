// SPDX-License-Identifier: MIT
// Holds the rotations of eaxeql back until a batch is worth a pass over V. The rotations do not depend on V, and every
// element of V still sees them in their order.
//
// Where the upper triangle of V begins as +0, it keeps track of the zeros that are left, so that their rotations need
// not be done: a fifth of all.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "algorithms/eigen_kernel_table.h"

namespace zortav {

class RotationRecorder {
 public:
  RotationRecorder(std::size_t n, double* v) : n_(n), v_(v) {
    if (n <= longest_run && upper_triangle_is_zero()) {
      sweep_ = 0;
      std::fill_n(negative_zero_, n, static_cast<unsigned char>(0));
    }
  }
  RotationRecorder(const RotationRecorder&) = delete;
  RotationRecorder& operator=(const RotationRecorder&) = delete;

  // Begins a run of at most `wanted` rotations from the plane (top, top + 1) downward; at least one, and as many as are
  // granted must be filled in before it is ended.
  Rotation* begin(std::size_t top, std::size_t wanted, std::size_t& granted) {
    granted = std::min(wanted, longest_run);
    // Groups of sweeps are not parted.
    const std::size_t space = runs_ % runs_together == 0 ? runs_together * granted : granted;
    if (runs_ == most_runs || rotations_ + std::min(space, most_rotations) > most_rotations) {
      apply();
    }
    Rotation* const at = rotation_ + rotations_;
    run_[runs_++] = {top, granted, at, {no_zeros, nullptr}};
    return at;
  }

  void end() {
    RotationRun& run = run_[runs_ - 1];
    if (sweep_ != no_zeros) {
      // The zeros are known in the planes from `sweep_` on, as long as each sweep reaches from the last plane to there.
      if (run.top + 2 == n_ && run.top + 1 - run.count <= sweep_ && sweep_ + 1 < n_ && zeros_stay_zeros(run)) {
        follow_zeros(run);
        ++sweep_;
      } else {
        const RotationRun last = run;
        --runs_;
        flush();
        run_[runs_++] = last;
      }
    }
    const RotationRun& ended = run_[runs_ - 1];
    rotations_ = static_cast<std::size_t>(ended.rotation - rotation_) + ended.count;
  }

  // Leaves V as all rotations so far make it.
  void flush() {
    apply();
    if (sweep_ != no_zeros) {
      write_zeros();
      sweep_ = no_zeros;
    }
  }

 private:
  // 304, 19, 5 and 12 KiB of the caller's stack.
  static constexpr std::size_t most_rotations = 19456;
  static constexpr std::size_t longest_run = most_rotations / runs_together;

  bool upper_triangle_is_zero() const {
    for (std::size_t j = 1; j < n_; ++j) {
      const double* const column = v_ + j * n_;
      bool zero = true;
      for (std::size_t i = 0; i < j; ++i) {
        zero &= column[i] == 0.0 && !std::signbit(column[i]);
      }
      if (!zero) {
        return false;
      }
    }
    return true;
  }

  static bool zeros_stay_zeros(const RotationRun& run) {
    bool numbers = true;
    for (std::size_t k = 0; k < run.count; ++k) {
      const double sum = run.rotation[k].c + run.rotation[k].s;
      numbers &= sum == sum;
    }
    return numbers;
  }

  // The signs of c·x - s·t and s·x + c·t for zeros x and t: a sum of zeros is -0 only if both are.
  void follow_zeros(RotationRun& run) {
    unsigned char* const negative = negative_ + (run.rotation - rotation_);
    run.zeros = {sweep_, negative};
    unsigned char t = negative_zero_[run.top + 1];
    std::size_t i = run.top;
    for (std::size_t k = 0; k < run.count; ++k, --i) {
      negative[k] = t;
      const unsigned char c = std::signbit(run.rotation[k].c);
      const unsigned char s = std::signbit(run.rotation[k].s);
      const unsigned char x = negative_zero_[i];
      negative_zero_[i + 1] = static_cast<unsigned char>((s ^ x) & (c ^ t));
      t = static_cast<unsigned char>((c ^ x) & (s ^ t ^ 1));
    }
    negative_zero_[i + 1] = t;
  }

  void write_zeros() {
    for (std::size_t j = sweep_ + 1; j < n_; ++j) {
      if (negative_zero_[j] != 0) {
        std::fill_n(v_ + j * n_, j - sweep_, -0.0);
      }
    }
  }

  void apply() {
    if (runs_ != 0) {
      eigen_kernels().rotate(n_, v_, {run_, runs_});
    }
    runs_ = 0;
    rotations_ = 0;
  }

  std::size_t n_;
  double* v_;
  std::size_t runs_ = 0;
  std::size_t rotations_ = 0;
  // The sweeps so far, as long as zeros are followed, and the signs of the zeros left in each column.
  std::size_t sweep_ = no_zeros;
  unsigned char negative_zero_[longest_run];
  RotationRun run_[most_runs];
  Rotation rotation_[most_rotations];
  unsigned char negative_[most_rotations];
};

// A call may take 384 KiB of a thread's stack. What is not left to the recorder is ample for the frames themselves.
static_assert(sizeof(RotationRecorder) <= (384 - 32) * 1024);

}  // namespace zortav
