// SPDX-License-Identifier: MIT
// The inner loops of the eigen-solver at each instruction-set level.
#pragma once

#include <cstddef>
#include <cstdint>

#include "dispatch/instruction_set.h"

namespace zortav {

// The rotation of columns i and i + 1: (x, t) to (c·x - s·t, s·x + c·t).
struct Rotation {
  double c;
  double s;
};

// The zeros of an upper triangle that begins as +0. Before sweep number `sweep`, counted from 0, element (k, i) with
// i > k + sweep has met nothing but zeros, so its column holds the same zero in all these rows, and only its sign
// changes. Rotations of such zeros are left out; what must be known is the zero that a row's first rotation meets.
struct RotationZeros {
  std::size_t sweep;
  const unsigned char* negative;  // rotation by rotation: whether the zero of the right column, as it comes, is -0
};
inline constexpr std::size_t no_zeros = static_cast<std::size_t>(-1) / 4;  // a sweep that leaves none

// One sweep: rotations of columns (top, top + 1), (top - 1, top), ...; with zeros, down to `zeros.sweep` or further.
struct RotationRun {
  std::size_t top;
  std::size_t count;
  const Rotation* rotation;
  RotationZeros zeros;
};

struct RotationBatch {
  const RotationRun* run;
  std::size_t runs;
};

// The sweeps of a batch at most, and the number of them that pass over V together at best.
inline constexpr std::size_t most_runs = 128;
inline constexpr std::size_t runs_together = 4;

// A sweep of the iteration on T as it is computed: rotations of the planes next, next - 1, ..., `remaining` of them.
struct TridiagonalSweep {
  double* d;
  double* e;
  Rotation* rotation;  // where the next one is kept
  std::ptrdiff_t next;
  std::size_t remaining;
  // between two planes, in the names of eaxeql.cpp
  double s, c, p, g;
};

// One rotation is a chain of divisions and a square root, each waiting for the one before. A pass over V computes what
// it finds here in between, and calls `go_on` when none remains; that may set up more.
struct SweepSource {
  TridiagonalSweep sweep;
  void (*go_on)(SweepSource& source);
};

struct EigenKernelTable {
  // Σ x(k)·y(k) in eight lanes
  double (*dot)(std::size_t n, const double* x, const double* y);
  // On the leading rows of a packed triangle: A := A - u·qᵀ - q·uᵀ; p := A·w; and the latter with A as the former
  // leaves it. No vector may lie in these rows.
  void (*update)(std::size_t rows, double* a, const double* u, const double* q);
  void (*multiply)(std::size_t rows, double* a, const double* w, double* p);
  void (*update_and_multiply)(std::size_t rows, double* a, const double* u, const double* q, const double* w,
                              double* p);
  // computes all rotations that remain
  void (*sweep)(TridiagonalSweep& sweep);
  // applies a batch to all n rows of V, and computes rotations from the source as far as that takes no time
  void (*rotate)(std::size_t n, double* v, const RotationBatch& batch, SweepSource& source);
  // applies the reflectors in the rows 2..n-1 of a packed triangle to the n columns of V
  void (*reflect)(std::size_t n, const double* a, double* v);
};

namespace sse4 {
extern const EigenKernelTable eigen_kernel_table;
}
namespace avx2 {
extern const EigenKernelTable eigen_kernel_table;
}
namespace avx512 {
extern const EigenKernelTable eigen_kernel_table;
}

inline const EigenKernelTable& eigen_kernels() noexcept {
  static constexpr TablePerLevel<EigenKernelTable> tables{
      {&sse4::eigen_kernel_table, &avx2::eigen_kernel_table, &avx512::eigen_kernel_table}};
  return tables.active();
}

}  // namespace zortav
