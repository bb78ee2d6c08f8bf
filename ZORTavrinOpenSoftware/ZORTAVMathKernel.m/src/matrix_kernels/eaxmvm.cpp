// SPDX-License-Identifier: MIT
// y := A·x for several vectors, A sparse with its lower triangle stored by rows, the diagonal last in every row: as the
// symmetric matrix that the triangle stands for (mode 1), as the triangle alone (mode 2), or, with as many entries as
// unknowns, as a diagonal.
//
// The symmetric product reads the triangle once: entry A(i,j) serves y(i) and y(j). Its threads share out groups of
// four vectors, never rows, so the update of y(j) needs no lock and the order of the additions into an element of y
// does not depend on the team. A thread that holds two groups takes both through one sweep, which halves the reading of
// A.
#include <algorithm>
#include <cstdint>

#include "ZORTAVSparseKernels.h"
#include "ZORTAVVectorKernels.h"
#include "matrix_kernels/sparse_kernel_table.h"

namespace {

using zortav::SparseRows;
using zortav::SparseSweep;

constexpr std::int32_t mode_symmetric = 1;
constexpr std::int32_t mode_lower = 2;
constexpr std::int64_t group_width = 4;

struct Vectors {
  std::int64_t n;
  const double* x;
  double* y;

  const double* x_of(std::int64_t v) const { return x + v * n; }
  double* y_of(std::int64_t v) const { return y + v * n; }
};

// Whether columns n apart fall into the same few sets of a first-level cache, which keeps 4096 bytes apart in one set:
// eight columns of x and eight of y then evict each other.
bool columns_collide(std::int64_t n) {
  constexpr std::int64_t numbers_between_set_mates = 512;
  constexpr std::int64_t half_a_line = 4;
  return (n + half_a_line) % numbers_between_set_mates <= 2 * half_a_line;
}

// Vectors first..first+count-1 by sweeps of four and eight; count is a multiple of four.
void sweep_groups(const SparseRows& a, const Vectors& vectors, std::int64_t first, std::int64_t count, SparseSweep four,
                  SparseSweep eight) {
  std::int64_t v = first;
  while (v < first + count) {
    const bool pair = v + 2 * group_width <= first + count && !columns_collide(vectors.n);
    (pair ? eight : four)(a, vectors.n, vectors.x_of(v), vectors.y_of(v));
    v += pair ? 2 * group_width : group_width;
  }
}

void multiply_diagonal(const Vectors& vectors, std::int64_t nvec, const double* values) {
  // The first vector is computed whatever nvec is.
  for (std::int64_t v = 0; v < std::max<std::int64_t>(nvec, 1); ++v) {
    zortav::sparse_kernels().diagonal(vectors.n, values, vectors.x_of(v), vectors.y_of(v));
  }
}

void multiply_lower(const SparseRows& a, const Vectors& vectors, std::int64_t nvec) {
  const auto& kernels = zortav::sparse_kernels();
  const std::int64_t few = nvec % group_width;
  if (few > 0) {
    kernels.lower[few - 1](a, vectors.n, vectors.x, vectors.y);
  }
  sweep_groups(a, vectors, few, nvec - few, kernels.lower[group_width - 1], kernels.lower_eight);
}

// The rows below the stored ones receive no assignment, only additions. The rows above need no clearing: whatever is
// added into such a row before its end is overwritten there.
void clear_unassigned_rows(const SparseRows& a, const Vectors& vectors, std::int64_t first, std::int64_t count) {
  const std::int32_t unit = 1;
  const std::int64_t row = zortav::sparse_first_cleared_row(a.nrows);
  const auto rows = static_cast<std::int32_t>(vectors.n - row);
  for (std::int64_t v = first; v < first + count; ++v) {
    e_dzero(&rows, vectors.y_of(v) + row, &unit);
  }
}

void multiply_symmetric(const SparseRows& a, const Vectors& vectors, std::int64_t nvec) {
  const auto& kernels = zortav::sparse_kernels();
  const std::int64_t few = nvec % group_width;
  if (few > 0) {
    clear_unassigned_rows(a, vectors, 0, few);
    kernels.symmetric[few - 1](a, vectors.n, vectors.x, vectors.y);
  }
  const std::int64_t groups = nvec / group_width;
  if (groups == 0) {
    return;
  }
  // A single group leaves nothing to divide: the region is then entered without a fork.
#pragma omp parallel if (groups > 1) default(none) shared(a, vectors, kernels, few, groups)
  {
    // The schedule gives every thread one contiguous range of groups; the range is noted, then swept.
    std::int64_t first = 0;
    std::int64_t count = 0;
#pragma omp for schedule(static) nowait
    for (std::int64_t g = 0; g < groups; ++g) {
      first = count == 0 ? g : first;
      ++count;
    }
    const std::int64_t first_vector = few + first * group_width;
    clear_unassigned_rows(a, vectors, first_vector, count * group_width);
    sweep_groups(a, vectors, first_vector, count * group_width, kernels.symmetric[group_width - 1],
                 kernels.symmetric_eight);
  }
}

}  // namespace

void eaxmvm(const int32_t* mode, const int32_t* nnz, const int32_t* nrows, const int32_t* n, const int32_t* nvec,
            const int32_t* colidx, const int32_t* rowptr, const double* values, const double* x, double* y) {
  const Vectors vectors{*n, x, y};
  if (*nnz == *n) {
    multiply_diagonal(vectors, *nvec, values);
    return;
  }
  if (*nvec < 1 || *n < 1) {
    return;
  }
  const SparseRows a{colidx, rowptr, values, std::max(*nrows, 0)};
  if (*mode == mode_symmetric) {
    multiply_symmetric(a, vectors, *nvec);
  } else if (*mode == mode_lower) {
    multiply_lower(a, vectors, *nvec);
  }
}
