// SPDX-License-Identifier: MIT
// Holds the rotations of eaxeql back until a batch is worth a pass over V. The rotations do not depend on V, and every
// element of V still sees them in their order. Up to a certain order one batch is filled while another is applied.
//
// Where the upper triangle of V begins as +0, it keeps track of the zeros that are left, so that their rotations need
// not be done: a fifth of all.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "algorithms/eigen_kernel_table.h"

namespace zortav {

class RotationRecorder {
 public:
  RotationRecorder(std::size_t n, double* v)
      : n_(n),
        v_(v),
        halves_(n <= order_of_halves ? 2 : 1),
        room_(halves_ == 2 ? std::min(most_rotations / 2, sweeps_a_half * n) : most_rotations),
        longest_run_(room_ / runs_together) {
    if (n <= longest_order && upper_triangle_is_zero()) {
      sweep_ = 0;
      std::fill_n(negative_zero_, n, static_cast<unsigned char>(0));
    }
  }
  RotationRecorder(const RotationRecorder&) = delete;
  RotationRecorder& operator=(const RotationRecorder&) = delete;

  // Begins a run of at most `wanted` rotations from the plane (top, top + 1) downward. As many as are granted, at least
  // one, must be filled in before it is ended. Null: the batch is full.
  Rotation* begin(std::size_t top, std::size_t wanted, std::size_t& granted) {
    granted = std::min(wanted, longest_run_);
    // Groups of sweeps are not parted.
    const std::size_t space = runs_ % runs_together == 0 ? runs_together * granted : granted;
    if (runs_ == most_runs || rotations_ + std::min(space, room_) > room_) {
      return nullptr;
    }
    Rotation* const at = rotation_ + filled_ * room_ + rotations_;
    run_[filled_][runs_++] = {top, granted, at, {no_zeros, nullptr}};
    rotations_ += granted;
    return at;
  }

  void end() {
    if (sweep_ == no_zeros || runs_with_zeros_ != all_runs) {
      return;
    }
    RotationRun& run = run_[filled_][runs_ - 1];
    // The zeros are known in the planes from `sweep_` on, as long as each sweep reaches from the last plane to there.
    if (run.top + 2 == n_ && run.top + 1 - run.count <= sweep_ && sweep_ + 1 < n_ && zeros_stay_zeros(run)) {
      follow_zeros(run);
      ++sweep_;
    } else {
      runs_with_zeros_ = runs_ - 1;
    }
  }

  bool empty() const { return runs_ == 0; }
  bool can_be_filled_while_applied() const { return halves_ == 2; }

  struct Batch {
    const RotationRun* run;
    std::size_t runs;
    std::size_t runs_with_zeros;
  };

  // The runs so far. Those that begin from now on belong to the next batch; where one batch cannot be filled while
  // another is applied, they may begin only after that.
  Batch close() {
    const Batch batch{run_[filled_], runs_, runs_with_zeros_};
    filled_ = halves_ - 1 - filled_;
    runs_with_zeros_ = runs_with_zeros_ == all_runs ? all_runs : 0;
    runs_ = 0;
    rotations_ = 0;
    return batch;
  }

  void apply(const Batch& batch, SweepSource& source) {
    const std::size_t first = std::min(batch.runs, batch.runs_with_zeros);
    rotate({batch.run, first}, source);
    if (first != batch.runs) {
      finish();
      rotate({batch.run + first, batch.runs - first}, source);
    }
  }

  // Writes the zeros that no rotation has reached.
  void finish() {
    for (std::size_t j = sweep_ + 1; sweep_ != no_zeros && j < n_; ++j) {
      if (negative_zero_[j] != 0) {
        std::fill_n(v_ + j * n_, j - sweep_, -0.0);
      }
    }
    sweep_ = no_zeros;
  }

 private:
  // 304, 19, 5 and 12 KiB of the caller's stack.
  static constexpr std::size_t most_rotations = 19456;
  static constexpr std::size_t longest_order = most_rotations / runs_together;
  // Beyond it V leaves the caches between two passes, and longer batches are worth more than two of them.
  static constexpr std::size_t order_of_halves = 1200;
  // The first batch is filled, and the last one applied, with nothing else to do.
  static constexpr std::size_t sweeps_a_half = 12;
  static constexpr std::size_t all_runs = static_cast<std::size_t>(-1);

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

  void rotate(const RotationBatch& batch, SweepSource& source) {
    if (batch.runs != 0) {
      eigen_kernels().rotate(n_, v_, batch, source);
    }
  }

  std::size_t n_;
  double* v_;
  // The batches that share the arrays, the one that is filled, and what it may hold.
  std::size_t halves_;
  std::size_t filled_ = 0;
  std::size_t room_;
  std::size_t longest_run_;
  std::size_t runs_ = 0;
  std::size_t rotations_ = 0;
  // The sweeps so far, as long as zeros are followed, and the signs of the zeros left in each column. Where that ended,
  // the runs of the batch before that.
  std::size_t sweep_ = no_zeros;
  std::size_t runs_with_zeros_ = all_runs;
  unsigned char negative_zero_[longest_order];
  RotationRun run_[2][most_runs];
  Rotation rotation_[most_rotations];
  unsigned char negative_[most_rotations];
};

// A call may take 384 KiB of a thread's stack. What is not left to the recorder is ample for the frames themselves.
static_assert(sizeof(RotationRecorder) <= (384 - 32) * 1024);

}  // namespace zortav
