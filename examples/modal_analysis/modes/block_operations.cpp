// SPDX-License-Identifier: MIT
#include "modes/block_operations.h"

#include "ZORTAVMatrixProduct.h"
#include "ZORTAVSparseKernels.h"
#include "ZORTAVVectorKernels.h"

namespace modal {
namespace {

constexpr double zero = 0.0;
constexpr double one = 1.0;
constexpr std::int32_t unit = 1;

}  // namespace

void multiply(const SymmetricMatrix& a, std::int32_t columns, const double* x, double* y) {
  // With every diagonal stored, as many entries as rows means diagonal, which is how eaxmvm reads it.
  constexpr std::int32_t symmetric = 1;
  const std::int32_t entries = a.entries();
  eaxmvm(&symmetric, &entries, &a.order, &a.order, &columns, a.column.data(), a.row_end.data(), a.value.data(), x, y);
}

void inner_products(std::int32_t n, std::int32_t p, const double* a, std::int32_t q, const double* b, double* c) {
  eagemm("T", "N", &p, &q, &n, &one, a, &n, b, &n, &zero, c, &p);
}

void combine(std::int32_t n, std::int32_t p, const double* a, std::int32_t q, const double* b, double* c) {
  eagemm("N", "N", &n, &q, &p, &one, a, &n, b, &p, &zero, c, &n);
}

double norm(std::int32_t n, const double* x) {
  return e_dnrm2(&n, x, &unit);
}

void scale(std::int32_t n, double alpha, double* x) {
  e_dscal(&n, &alpha, x, &unit);
}

void add_multiple(std::int32_t n, double alpha, const double* x, double* y) {
  e_daxpy(&n, &alpha, x, &unit, y, &unit);
}

}  // namespace modal
