// SPDX-License-Identifier: MIT
#include "modes/reduced_eigenproblem.h"

#include <cmath>
#include <string>

#include "ZORTAVEigenSolver.h"
#include "ZORTAVFactorization.h"
#include "factorization/index.h"
#include "modes/modal_solver.h"

namespace modal {
namespace {

// With unit diagonals a pivot is the squared sine of the angle between a direction and the span of those before it;
// below this it is made of rounding errors.
constexpr double dependent = 1e-13;

// Element (i, j), j ≤ i, of a packed triangle by rows.
std::size_t packed(std::size_t i, std::size_t j) {
  return i * (i + 1) / 2 + j;
}

class Reduction {
 public:
  Reduction(std::int32_t order, const std::vector<double>& a, const std::vector<double>& b)
      : n_(at(order)), a_(a), b_(b), scale_(n_, 0.0) {
    for (std::size_t i = 0; i < n_; ++i) {
      if (b[i + i * n_] > 0.0) {
        scale_[i] = 1.0 / std::sqrt(b[i + i * n_]);
        kept_.push_back(i);
      }
    }
  }

  ReducedSolution solve() {
    factor();
    transform();
    const auto order = static_cast<std::int32_t>(kept_.size());
    constexpr std::int32_t ascending = 1;
    ReducedSolution solution;
    solution.value.resize(kept_.size());
    std::vector<double> vectors(kept_.size() * kept_.size());
    std::vector<double> work(kept_.size());
    std::int32_t failed = 0;
    if (order > 0 && eaxeig(&order, &ascending, transformed_.data(), solution.value.data(), vectors.data(), work.data(),
                            &failed) != 0) {
      throw NotConverged("the reduced eigenproblem did not converge at eigenvalue " + std::to_string(failed) + " of " +
                         std::to_string(order));
    }
    solution.coefficient.assign(n_ * kept_.size(), 0.0);
    for (std::size_t c = 0; c < kept_.size(); ++c) {
      double* v = vectors.data() + c * kept_.size();
      for (std::size_t i = kept_.size(); i-- > 0;) {
        v[i] /= l_[packed(i, i)];
        for (std::size_t j = 0; j < i; ++j) {
          v[j] -= l_[packed(i, j)] * v[i];
        }
        solution.coefficient[kept_[i] + c * n_] = scale_[kept_[i]] * v[i];
      }
    }
    return solution;
  }

 private:
  double scaled(const std::vector<double>& matrix, std::size_t i, std::size_t j) const {
    return scale_[kept_[i]] * scale_[kept_[j]] * matrix[kept_[i] + kept_[j] * n_];
  }

  // Cholesky of the scaled B. The factor is extended row by row, so dropping a row costs only the rows after it.
  void factor() {
    l_.resize(packed(kept_.size(), 0));
    std::size_t factored = 0;
    while (factored < kept_.size()) {
      for (std::size_t i = factored; i < kept_.size(); ++i) {
        for (std::size_t j = 0; j <= i; ++j) {
          l_[packed(i, j)] = scaled(b_, i, j);
        }
      }
      const auto order = static_cast<std::int32_t>(kept_.size());
      const auto first = static_cast<std::int32_t>(factored + 1);
      std::int32_t failed = 0;
      double pivot = 0.0;
      eaxfch2(&order, &first, &order, &dependent, l_.data(), &failed, &pivot);
      if (failed == 0) {
        return;
      }
      factored = at(failed - 1);
      kept_.erase(kept_.begin() + (failed - 1));
    }
  }

  // L⁻¹·A·L⁻ᵀ, its lower triangle packed by rows: forward substitution from the left, then the same from the right.
  void transform() {
    const std::size_t m = kept_.size();
    std::vector<double> g(m * m);  // row i: contiguous
    for (std::size_t i = 0; i < m; ++i) {
      for (std::size_t j = 0; j < m; ++j) {
        g[i * m + j] = scaled(a_, i, j);
      }
    }
    forward(g);
    for (std::size_t i = 0; i < m; ++i) {
      for (std::size_t j = 0; j < i; ++j) {
        std::swap(g[i * m + j], g[j * m + i]);
      }
    }
    forward(g);
    transformed_.resize(packed(m, 0));
    for (std::size_t i = 0; i < m; ++i) {
      for (std::size_t j = 0; j <= i; ++j) {
        transformed_[packed(i, j)] = 0.5 * (g[i * m + j] + g[j * m + i]);
      }
    }
  }

  // G := L⁻¹·G by rows.
  void forward(std::vector<double>& g) const {
    const std::size_t m = kept_.size();
    for (std::size_t i = 0; i < m; ++i) {
      double* row = g.data() + i * m;
      for (std::size_t k = 0; k < i; ++k) {
        const double factor = l_[packed(i, k)];
        const double* above = g.data() + k * m;
        for (std::size_t j = 0; j < m; ++j) {
          row[j] -= factor * above[j];
        }
      }
      for (std::size_t j = 0; j < m; ++j) {
        row[j] /= l_[packed(i, i)];
      }
    }
  }

  std::size_t n_;
  const std::vector<double>& a_;
  const std::vector<double>& b_;
  std::vector<double> scale_;  // makes the diagonal of B one
  std::vector<std::size_t> kept_;
  std::vector<double> l_;
  std::vector<double> transformed_;
};

}  // namespace

ReducedSolution solve_reduced(std::int32_t order, const std::vector<double>& a, const std::vector<double>& b) {
  return Reduction(order, a, b).solve();
}

}  // namespace modal
