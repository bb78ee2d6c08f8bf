// SPDX-License-Identifier: MIT
// Blocks of vectors, column by column, as the numerical library takes them.
#pragma once

#include <cstdint>

#include "structure/symmetric_matrix.h"

namespace modal {

// Y := A·X, both order × columns.
void multiply(const SymmetricMatrix& a, std::int32_t columns, const double* x, double* y);

// C := Aᵀ·B, A n × p, B n × q, C p × q.
void inner_products(std::int32_t n, std::int32_t p, const double* a, std::int32_t q, const double* b, double* c);

// C := A·B, A n × p, B p × q, C n × q.
void combine(std::int32_t n, std::int32_t p, const double* a, std::int32_t q, const double* b, double* c);

double norm(std::int32_t n, const double* x);
void scale(std::int32_t n, double alpha, double* x);
// y := y + alpha·x
void add_multiple(std::int32_t n, double alpha, const double* x, double* y);

}  // namespace modal
