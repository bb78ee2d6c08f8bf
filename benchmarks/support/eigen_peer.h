// SPDX-License-Identifier: MIT
// Eigen as a peer, compiled for the machine it runs on. Matrices are full, by columns, without gaps.
#pragma once

#include <cstdint>

namespace zorbench::eigen {

void set_threads(int threads);
void axpy(std::int32_t n, double alpha, const double* x, double* y);
double norm1(std::int32_t n, const double* x);
double norm2(std::int32_t n, const double* x);
double greatest(std::int32_t n, const double* x);
void scale(std::int32_t n, double alpha, double* x);
void copy(std::int32_t n, const double* x, double* y);
void exchange(std::int32_t n, double* x, double* y);
// y := beta·y + alpha·op(A)·x
void multiply(bool transposed, std::int32_t n, double alpha, const double* a, const double* x, double beta, double* y);
// C := alpha·op(A)·op(B), m x n, over k
void multiply(bool transpose_a, bool transpose_b, std::int32_t m, std::int32_t n, std::int32_t k, double alpha,
              const double* a, const double* b, double* c);
// A = L·Lᵀ, in place
void cholesky(std::int32_t n, double* a);
// A·v = d·v from a's lower triangle
void eigenvectors(std::int32_t n, const double* a, double* d, double* v);
// inverse := A⁻¹ by elimination with partial pivoting
void invert(std::int32_t n, const double* a, double* inverse);
// Y := A·X, A symmetric, its lower triangle by rows (counted from 0) or, the same arrays, its upper one by columns
void multiply_symmetric(std::int32_t n, std::int32_t nvec, const std::int32_t* rowptr, const std::int32_t* column,
                        const double* values, const double* x, double* y);

}  // namespace zorbench::eigen
