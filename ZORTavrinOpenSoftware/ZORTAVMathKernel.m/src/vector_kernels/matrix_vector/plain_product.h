// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace zortav {

// y := alpha·A·x + beta·y for m rows, each row's sum in the order that dgemv_n documents. Increments go forward from
// the element that x and y point to.
void plain_product(std::int64_t m, std::int64_t n, double alpha, const double* a, std::int64_t lda, const double* x,
                   std::int64_t incx, double beta, double* y, std::int64_t incy);

}  // namespace zortav
