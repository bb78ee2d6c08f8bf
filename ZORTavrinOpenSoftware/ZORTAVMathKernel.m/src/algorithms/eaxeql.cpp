// SPDX-License-Identifier: MIT
// T = S·diag(d)·Sᵀ for a tridiagonal T by the QL algorithm with implicit shifts; V := V·S.
// Method: Dubrulle, Martin and Wilkinson, Handbook for Automatic Computation II, contribution II/4 (imtql2), in its
// older form without a guard against a rotation of length zero.
#include <cmath>
#include <cstdint>

#include "ZORTAVEigenSolver.h"
#include "algorithms/eaxeql_recorder.h"

namespace {

constexpr int iterations_per_eigenvalue = 30;

// The first m >= l whose e[m] is lost beside its two diagonal neighbours; n - 1 if there is none.
std::int64_t end_of_block(std::int64_t l, std::int64_t n, const double* d, const double* e) {
  for (std::int64_t m = l; m + 1 < n; ++m) {
    const double dd = std::fabs(d[m]) + std::fabs(d[m + 1]);
    if (std::fabs(e[m]) + dd == dd) {
      return m;
    }
  }
  return n - 1;
}

// The iteration, sweep by sweep. V follows in batches, during which the iteration goes on.
class Iteration : private zortav::SweepSource {
 public:
  Iteration(std::int64_t n, double* d, double* e, double* v)
      : SweepSource{{d, e, nullptr, 0, 0, 0.0, 0.0, 0.0, 0.0}, go_on_here}, n_(n), recorder_(size(n), v) {}

  // Returns 0, or the index of the eigenvalue that did not converge.
  std::int64_t run() {
    open_ = begin_sweep();
    for (;;) {
      begin_run();
      while (sweep.remaining != 0) {
        zortav::eigen_kernels().sweep(sweep);
        end_run();
      }
      if (recorder_.empty()) {
        break;
      }
      const zortav::RotationRecorder::Batch batch = recorder_.close();
      if (recorder_.can_be_filled_while_applied()) {
        begin_run();
      }
      recorder_.apply(batch, *this);
    }
    recorder_.finish();
    return failed_;
  }

 private:
  static std::size_t size(std::int64_t count) { return static_cast<std::size_t>(count); }

  static void go_on_here(SweepSource& source) { static_cast<Iteration&>(source).end_run(); }

  // Finds the next block to work on and the shift of a sweep over it. Returns false where the iteration ends.
  bool begin_sweep() {
    const double* const d = sweep.d;
    const double* const e = sweep.e;
    while ((m_ = end_of_block(l_, n_, d, e)) == l_) {
      if (++l_ == n_) {
        return false;
      }
      count_ = 0;
    }
    if (count_ == iterations_per_eigenvalue) {
      failed_ = l_ + 1;
      return false;
    }
    ++count_;
    const double g = (d[l_ + 1] - d[l_]) / (2.0 * e[l_]);
    const double r = std::sqrt(g * g + 1.0);
    sweep.g = d[m_] - d[l_] + e[l_] / (g >= 0.0 ? g + r : g - r);
    sweep.s = 1.0;
    sweep.c = 1.0;
    sweep.p = 0.0;
    sweep.next = m_ - 1;
    return true;
  }

  // Lets the recorder grant rotations of the sweep, if it is open, none remain, and the batch has room.
  void begin_run() {
    if (open_ && sweep.remaining == 0) {
      std::size_t granted = 0;
      sweep.rotation = recorder_.begin(size(sweep.next), size(sweep.next - l_ + 1), granted);
      sweep.remaining = sweep.rotation != nullptr ? granted : 0;
    }
  }

  void end_run() {
    recorder_.end();
    if (sweep.next < l_) {
      sweep.d[l_] = sweep.d[l_] - sweep.p;
      sweep.e[l_] = sweep.g;
      sweep.e[m_] = 0.0;
      open_ = begin_sweep();
    }
    begin_run();
  }

  std::int64_t n_;
  // The eigenvalue that is sought, the end of its block and the sweeps done for it.
  std::int64_t l_ = 0;
  std::int64_t m_ = 0;
  int count_ = 0;
  bool open_ = false;  // there is a sweep to go on with
  std::int64_t failed_ = 0;
  zortav::RotationRecorder recorder_;
};

}  // namespace

int32_t eaxeql(const int32_t* order, double* d, double* e, double* v, int32_t* ierr) {
  const std::int64_t n = *order;
  v[0] = 1.0;
  if (n < 2) {
    return 0;
  }
  for (std::int64_t i = 1; i < n; ++i) {
    e[i - 1] = e[i];
    v[i + i * n] = 1.0;
  }
  e[n - 1] = 0.0;
  const std::int64_t failed = Iteration(n, d, e, v).run();
  if (failed != 0) {
    *ierr = static_cast<int32_t>(failed);
    return 1;
  }
  return 0;
}
