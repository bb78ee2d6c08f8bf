// SPDX-License-Identifier: MIT
#include "modes/subspace_iteration.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "factorization/index.h"
#include "modes/block_operations.h"
#include "modes/modal_solver.h"
#include "modes/reduced_eigenproblem.h"

namespace modal {
namespace {

constexpr std::int32_t group = 4;  // vectors that the sparse product takes at a time
constexpr std::int32_t guard_vectors = 8;

// An eigenvalue has settled when an iteration changed it by less, relatively. Errors shrink by a fixed factor f an
// iteration, so what is left is change·f/(1−f): 1e-9 even at f = 0.99.
constexpr double settled_change = 1e-11;
// Bound on the squared residual in the norm of K⁻¹, relative to θ; the eigenvalue's error is at most this over the
// relative gap.
constexpr double settled_defect = 1e-13;
// An ill-conditioned K leaves rounding errors above these. Their size, relative to the eigenvalue, is about
// rounding = ε·(xᵀ·diag(K)·x / θ) / √order; what was seen on plates and on beams up to a slenderness of 1000 was one to
// four times that in the change and ten to forty times in the defect, which the factor's errors dominate.
constexpr double change_in_rounding = 4.0;
constexpr double defect_in_rounding = 40.0;
// When nothing has improved for some iterations, this much looser is good enough:
constexpr double loosening = 8.0;
constexpr int patience = 6;
constexpr int iteration_limit = 300;
// Rounding errors of the reduced problem count as such up to this, relatively.
constexpr double most_reduced_rounding = 1e-8;
// Beyond this a mode says nothing about the structure.
constexpr double hopeless_rounding = 1e-3;

// Iterations in a row with the same number of independent vectors, fewer than the block has, until that is taken to be
// all there are: K⁻¹·M maps new vectors into a space of the rank of M.
constexpr int rank_is_certain = 3;

}  // namespace

std::int32_t block_size(std::int32_t modes, std::int32_t order) {
  const std::int64_t wanted = std::max<std::int64_t>(std::int64_t{modes} + guard_vectors, 2 * std::int64_t{modes});
  return static_cast<std::int32_t>(std::min<std::int64_t>((wanted + group - 1) / group * group, order));
}

SubspaceIteration::SubspaceIteration(const SymmetricMatrix& k, const SymmetricMatrix& m,
                                     const MultifrontalFactor& factor, std::int32_t block, double looseness)
    : k_(k),
      m_(m),
      factor_(factor),
      block_(block),
      looseness_(looseness),
      random_state_(1),
      x_(at(k.order) * at(block), 0.0) {
  mx_.resize(x_.size());
  if (block == k.order) {
    unit_start_ = true;
    for (std::int32_t i = 0; i < block; ++i) {
      x_[at(i) * at(block) + at(i)] = 1.0;
    }
    multiply(m_, block_, x_.data(), mx_.data());
  } else {
    fill_up();
  }
}

void SubspaceIteration::start_from(std::span<const double> x) {
  x_.assign(x.begin(), x.end());
  unit_start_ = false;
  value_.clear();
  multiply(m_, block_, x_.data(), mx_.data());
}

void SubspaceIteration::widen(std::int32_t block) {
  block_ = block;
  full_for_ = 0;
  x_.resize(at(k_.order) * at(block));
  mx_.resize(x_.size());
  fill_up();
}

bool SubspaceIteration::complete() const {
  return block_ == k_.order || full_for_ >= rank_is_certain;
}

// Pseudo-random vectors (the generator of Knuth's MMIX), M-orthogonal to the Ritz vectors, in the columns past them.
void SubspaceIteration::fill_up() {
  const std::int32_t n = k_.order;
  const auto kept = static_cast<std::int32_t>(value_.size());
  const std::int32_t fresh = block_ - kept;
  double* x = x_.data() + at(n) * at(kept);
  double* mx = mx_.data() + at(n) * at(kept);
  for (std::size_t i = 0; i < at(n) * at(fresh); ++i) {
    random_state_ = random_state_ * 6364136223846793005U + 1442695040888963407U;
    x[i] = static_cast<double>(random_state_ >> 11) * 0x1p-52 - 1.0;
  }
  if (kept > 0) {
    std::vector<double> share(at(kept) * at(fresh));
    inner_products(n, kept, mx_.data(), fresh, x, share.data());
    combine(n, kept, x_.data(), fresh, share.data(), mx);
    for (std::int32_t c = 0; c < fresh; ++c) {
      add_multiple(n, -1.0, mx + at(n) * at(c), x + at(n) * at(c));
    }
  }
  multiply(m_, fresh, x, mx);
}

void SubspaceIteration::iterate() {
  const std::int32_t n = k_.order;
  const std::size_t q = at(block_);
  if (unit_start_) {
    z_ = x_;
  } else {
    z_ = mx_;
    factor_.solve(block_, z_.data());
  }

  // θ·(M·x)ᵀ·K⁻¹·(M·x) − 1, with xᵀ·M·x = 1 and xᵀ·K·x = θ, is the squared residual of x in the norm of K⁻¹ over θ.
  std::vector<double> product(q * q);
  inner_products(n, block_, mx_.data(), block_, z_.data(), product.data());
  defect_.assign(value_.size(), 1.0);
  for (std::size_t i = 0; i < value_.size(); ++i) {
    defect_[i] = std::abs(value_[i] * product[i + i * q] - 1.0);
  }

  std::vector<double> reduced_k(q * q);
  std::vector<double> reduced_m(q * q);
  multiply(k_, block_, z_.data(), mx_.data());
  inner_products(n, block_, z_.data(), block_, mx_.data(), reduced_k.data());
  multiply(m_, block_, z_.data(), mx_.data());
  inner_products(n, block_, z_.data(), block_, mx_.data(), reduced_m.data());
  ReducedSolution reduced = solve_reduced(block_, reduced_k, reduced_m);

  const auto kept = static_cast<std::int32_t>(reduced.value.size());
  change_.assign(reduced.value.size(), 1.0);
  for (std::size_t i = 0; i < std::min(value_.size(), reduced.value.size()); ++i) {
    change_[i] = std::abs(reduced.value[i] - value_[i]) / reduced.value[i];
  }
  defect_.resize(reduced.value.size(), 1.0);
  full_for_ = kept == block_ || unit_start_ ? 0 : (reduced.value.size() == value_.size() ? full_for_ + 1 : 1);
  value_ = std::move(reduced.value);
  unit_start_ = false;

  combine(n, block_, z_.data(), kept, reduced.coefficient.data(), x_.data());
  std::swap(mx_, z_);
  combine(n, block_, z_.data(), kept, reduced.coefficient.data(), mx_.data());
  if (kept < block_) {
    fill_up();
  }
  ++iterations_;
}

// The first index from `wanted` on behind which the Ritz values leave a gap. Far behind it they have not converged, so
// the search ends half way through the spare vectors, at the widest gap so far.
std::int32_t SubspaceIteration::end_of_cluster(std::int32_t wanted) const {
  const auto kept = static_cast<std::int32_t>(value_.size());
  const std::int32_t last = complete() ? kept : std::min(kept - 1, wanted + std::max(group, (block_ - wanted) / 2));
  std::int32_t widest = wanted;
  double widest_gap = -1.0;
  for (std::int32_t i = wanted; i <= last; ++i) {
    const double gap = i == kept ? 1.0 : (value_[at(i)] - value_[at(i - 1)]) / value_[at(i)];
    if (gap > widest_gap) {
      widest = i;
      widest_gap = gap;
    }
    if (gap > cluster_gap) {
      break;
    }
  }
  return widest;
}

// How far the pairs up to converged_ are above what counts as settled: 1 and below is settled.
double SubspaceIteration::excess(bool stalled) const {
  const auto n = at(k_.order);
  double worst = 0.0;
  for (std::size_t i = 0; i < at(converged_); ++i) {
    double weighted = 0.0;
    for (std::size_t row = 0; row < n; ++row) {
      const double x = x_[i * n + row];
      weighted += k_.value[at(k_.row_end[row + 1] - 1)] * x * x;
    }
    const double rounding = std::numeric_limits<double>::epsilon() * weighted / value_[i] / std::sqrt(k_.order);
    if (!(rounding <= hopeless_rounding)) {
      throw NotConverged("the stiffness matrix is too ill-conditioned: rounding errors bury mode " +
                         std::to_string(i + 1));
    }
    // The reduced problem is solved to ε of its largest eigenvalue; as it is graded it mostly does better.
    const double reduced =
        stalled ? std::min(std::numeric_limits<double>::epsilon() * value_.back() / value_[i], most_reduced_rounding)
                : 0.0;
    worst =
        std::max({worst, change_[i] / std::max(looseness_ * settled_change, change_in_rounding * rounding + reduced),
                  defect_[i] / std::max(looseness_ * settled_defect, defect_in_rounding * rounding + reduced)});
  }
  return worst;
}

IterationState SubspaceIteration::state(std::int32_t wanted, double share) const {
  const auto largest = [wanted](const std::vector<double>& of) {
    return wanted > 0 ? *std::max_element(of.begin(), of.begin() + wanted) : 0.0;
  };
  return {iterations_,      block_, static_cast<std::int32_t>(value_.size()), wanted, largest(change_),
          largest(defect_), share};
}

void SubspaceIteration::run(std::int32_t wanted, const Report& report) {
  double first_excess = 0.0;
  double least_excess = std::numeric_limits<double>::infinity();
  int since_least = 0;
  for (int count = 1;; ++count) {
    iterate();
    const auto kept = static_cast<std::int32_t>(value_.size());
    if (kept < wanted) {
      if (full_for_ >= rank_is_certain) {
        throw NotConverged("the mass matrix leaves " + std::to_string(kept) + " finite eigenvalues where " +
                           std::to_string(wanted) + " modes were asked for");
      }
      if (count < iteration_limit) {
        report(state(kept, 0.0));
        continue;
      }
      throw NotConverged("the iteration found " + std::to_string(kept) + " independent vectors of " +
                         std::to_string(wanted));
    }
    converged_ = end_of_cluster(wanted);
    const double above = excess(false);
    if (above <= 1.0) {
      report(state(converged_, 1.0));
      return;
    }
    first_excess = std::max(first_excess, above);
    report(state(converged_, std::clamp(1.0 - std::log(above) / std::log(first_excess), 0.0, 1.0)));
    since_least = above < 0.5 * least_excess ? 0 : since_least + 1;
    least_excess = std::min(least_excess, above);
    if (since_least >= patience && excess(true) <= loosening) {
      return;
    }
    if (count >= iteration_limit) {
      throw NotConverged("after " + std::to_string(iterations_) + " iterations the eigenvalues have not settled");
    }
  }
}

}  // namespace modal
