// SPDX-License-Identifier: MIT
// Solves op(T)·x = b in place, T triangular and packed by columns: the published packed solve (J. J. Dongarra et al.,
// "An extended set of Fortran basic linear algebra subprograms", ACM TOMS 14 (1988)) without its test of the arguments.
//
// The order of the operations is the published one, multiplied, rounded, subtracted, rounded, at every increment:
//
//   T,  upper: j = n..1:  unless x(j) = 0: x(j) := x(j) / T(j,j), then x(i) := x(i) - x(j)·T(i,j), i < j;
//   T,  lower: j = 1..n:  the same, i > j;
//   Tᵀ, upper: j = 1..n:  x(j) := (x(j) - T(1,j)·x(1) - T(2,j)·x(2) - ... - T(j-1,j)·x(j-1)) / T(j,j);
//   Tᵀ, lower: j = n..1:  x(j) := (x(j) - T(n,j)·x(n) - T(n-1,j)·x(n-1) - ... - T(j+1,j)·x(j+1)) / T(j,j).
#include <cstdint>

#include "ZORTAVPackedSolves.h"
#include "vector_kernels/packed_solves/packed_solve_kernel_table.h"
#include "vector_kernels/packed_solves/packed_triangle.h"

namespace zortav {
namespace {

bool is_letter(char option, char upper_case) {
  constexpr char to_lower_case = 'a' - 'A';
  return option == upper_case || option == upper_case + to_lower_case;
}

// Any increment: element i (from 0) of x at position i·step.
class StridedSolve {
 public:
  StridedSolve(std::int64_t n, const double* ap, Diagonal diagonal, double* x, std::int64_t step)
      : n_(n), ap_(ap), diagonal_(diagonal), x_(step < 0 ? x - (n - 1) * step : x), step_(step) {}

  void upper() const {
    for (std::int64_t j = n_ - 1; j >= 0; --j) {
      subtract_column(j, upper(j), j - 1, -1, -1);
    }
  }
  void lower() const {
    for (std::int64_t j = 0; j < n_; ++j) {
      subtract_column(j, lower(j), j + 1, n_, 1);
    }
  }
  void upper_transposed() const {
    for (std::int64_t j = 0; j < n_; ++j) {
      subtract_sum(j, upper(j), 0, j, 1);
    }
  }
  void lower_transposed() const {
    for (std::int64_t j = n_ - 1; j >= 0; --j) {
      subtract_sum(j, lower(j), n_ - 1, j, -1);
    }
  }

 private:
  const double* upper(std::int64_t j) const { return upper_column(ap_, static_cast<std::size_t>(j)); }
  const double* lower(std::int64_t j) const {
    return lower_column(ap_, static_cast<std::size_t>(n_), static_cast<std::size_t>(j));
  }
  double& x(std::int64_t i) const { return x_[i * step_]; }

  void subtract_column(std::int64_t j, const double* column, std::int64_t from, std::int64_t end,
                       std::int64_t direction) const {
    if (x(j) == 0) {
      return;
    }
    if (diagonal_ == Diagonal::given) {
      x(j) = x(j) / column[j];
    }
    const double xj = x(j);
    for (std::int64_t i = from; i != end; i += direction) {
      x(i) = x(i) - xj * column[i];
    }
  }
  void subtract_sum(std::int64_t j, const double* column, std::int64_t from, std::int64_t end,
                    std::int64_t direction) const {
    double sum = x(j);
    for (std::int64_t i = from; i != end; i += direction) {
      sum = sum - column[i] * x(i);
    }
    x(j) = diagonal_ == Diagonal::given ? sum / column[j] : sum;
  }

  std::int64_t n_;
  const double* ap_;
  Diagonal diagonal_;
  double* x_;
  std::int64_t step_;
};

}  // namespace
}  // namespace zortav

void e_dtpsv(const char* uplo, const char* trans, const char* diag, const int32_t* n, const double* ap, double* x,
             const int32_t* incx, int64_t /*uplo_length*/, int64_t /*trans_length*/, int64_t /*diag_length*/) {
  using namespace zortav;
  if (*n <= 0) {
    return;
  }
  const Diagonal diagonal = is_letter(*diag, 'N') ? Diagonal::given : Diagonal::unit;
  const bool transposed = !is_letter(*trans, 'N');
  const bool upper = is_letter(*uplo, 'U');
  if (*incx == 1) {
    const PackedSolveKernelTable& solve = packed_solve_kernels();
    const auto order = static_cast<std::size_t>(*n);
    if (transposed) {
      (upper ? solve.upper_transposed : solve.lower_transposed)(order, ap, diagonal, x);
    } else {
      (upper ? solve.upper : solve.lower)(order, ap, diagonal, ZeroElement::skipped, x);
    }
    return;
  }
  const StridedSolve solve(*n, ap, diagonal, x, *incx);
  if (transposed) {
    upper ? solve.upper_transposed() : solve.lower_transposed();
  } else {
    upper ? solve.upper() : solve.lower();
  }
}
