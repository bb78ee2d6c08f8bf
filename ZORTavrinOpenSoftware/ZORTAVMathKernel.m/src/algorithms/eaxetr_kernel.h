// SPDX-License-Identifier: MIT
// Inner loops of eaxetr: the update by one reflector and the product with the next one in a single pass over the
// packed triangle, A := A - u·qᵀ - q·uᵀ and p := A·w.
//
// Row j enters the product twice: its dot product with w begins p(j), and a(j,k)·w(j) is added to p(k), k < j, row
// after row. Rows are taken in blocks of eight, so that the columns left of a block are whole octets; what is left of a
// block is a small triangle on the diagonal. Included by eigen_kernel_unit.cpp only.
#pragma once

#include <cstddef>

#include "algorithms/eigen_octet.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

double dot(std::size_t n, const double* x, const double* y) {
  Octet sum = zero_octet();
  std::size_t k = 0;
  for (; k + octet <= n; k += octet) {
    for (std::size_t q = 0; q < octet_registers; ++q) {
      const std::size_t at = k + q * register_lanes;
      sum.part[q] = hn::Add(sum.part[q], hn::Mul(hn::LoadU(tag, x + at), hn::LoadU(tag, y + at)));
    }
  }
  double lane[octet];
  for (std::size_t q = 0; q < octet_registers; ++q) {
    hn::StoreU(sum.part[q], tag, lane + q * register_lanes);
  }
  for (std::size_t at = 0; k < n; ++k, ++at) {
    lane[at] += x[k] * y[k];
  }
  return joined(lane);
}

// The rows that share their loads of u, q, w and p: as many as the registers hold.
constexpr std::size_t rows_at_once = register_lanes == octet ? 4 : 2;

template <bool updates, bool multiplies>
struct Reduction {
  const double* u;
  const double* q;
  const double* w;
  double* p;

  // Columns 0..width-1 of the rows j..j+Rows-1, the first of which starts at a. The lanes of their dot products are
  // stored to lane.
  template <std::size_t Rows>
  HWY_INLINE void left_of_block(std::size_t j, std::size_t width, double* a, double (*lane)[octet]) const {
    double* row[Rows];
    Register uj[Rows];
    Register qj[Rows];
    Register wj[Rows];
    Octet sum[Rows];
    for (std::size_t r = 0; r < Rows; ++r) {
      row[r] = a;
      a += j + r + 1;
      sum[r] = zero_octet();
      if constexpr (updates) {
        uj[r] = hn::Set(tag, u[j + r]);
        qj[r] = hn::Set(tag, q[j + r]);
      }
      if constexpr (multiplies) {
        wj[r] = hn::Set(tag, w[j + r]);
      }
    }
    for (std::size_t k = 0; k < width; k += octet) {
      for (std::size_t part = 0; part < octet_registers; ++part) {
        const std::size_t at = k + part * register_lanes;
        Register uk = hn::Zero(tag);
        Register qk = uk;
        Register wk = uk;
        Register pk = uk;
        if constexpr (updates) {
          uk = hn::LoadU(tag, u + at);
          qk = hn::LoadU(tag, q + at);
        }
        if constexpr (multiplies) {
          wk = hn::LoadU(tag, w + at);
          pk = hn::LoadU(tag, p + at);
        }
        for (std::size_t r = 0; r < Rows; ++r) {
          if (part == 0) {
            __builtin_prefetch(row[r] + k + rows_at_once * (j + r) + rows_at_once * (rows_at_once + 1) / 2, 1, 2);
          }
          Register x = hn::LoadU(tag, row[r] + at);
          if constexpr (updates) {
            x = hn::Sub(hn::Sub(x, hn::Mul(uj[r], qk)), hn::Mul(qj[r], uk));
            hn::StoreU(x, tag, row[r] + at);
          }
          if constexpr (multiplies) {
            sum[r].part[part] = hn::Add(sum[r].part[part], hn::Mul(x, wk));
            pk = hn::Add(pk, hn::Mul(x, wj[r]));
          }
        }
        if constexpr (multiplies) {
          hn::StoreU(pk, tag, p + at);
        }
      }
    }
    if constexpr (multiplies) {
      for (std::size_t r = 0; r < Rows; ++r) {
        for (std::size_t part = 0; part < octet_registers; ++part) {
          hn::StoreU(sum[r].part[part], tag, lane[r] + part * register_lanes);
        }
      }
    }
  }

  // The triangle of a block whose first row starts at a: columns first..j of the rows j.
  HWY_INLINE void in_block(std::size_t first, std::size_t rows, double* a, const double (*lane)[octet]) const {
    if constexpr (register_lanes == octet) {
      const auto all = hn::FirstN(tag, rows);
      const Register none = hn::Zero(tag);
      const Register uk = updates ? hn::MaskedLoad(all, tag, u + first) : none;
      const Register qk = updates ? hn::MaskedLoad(all, tag, q + first) : none;
      const Register wk = multiplies ? hn::MaskedLoad(all, tag, w + first) : none;
      Register pk = none;
      for (std::size_t r = 0; r < rows; ++r) {
        const std::size_t j = first + r;
        const auto before = hn::FirstN(tag, r);
        const auto with = hn::FirstN(tag, r + 1);
        Register x = hn::MaskedLoad(with, tag, a + first);
        if constexpr (updates) {
          x = hn::Sub(hn::Sub(x, hn::Mul(hn::Set(tag, u[j]), qk)), hn::Mul(hn::Set(tag, q[j]), uk));
          hn::BlendedStore(x, with, tag, a + first);
        }
        if constexpr (multiplies) {
          Octet sum;
          sum.part[0] = hn::LoadU(tag, lane[r]);
          sum.part[0] = hn::IfThenElse(with, hn::Add(sum.part[0], hn::Mul(x, wk)), sum.part[0]);
          const Register own = hn::IfThenElse(with, hn::Set(tag, joined(sum)), pk);
          pk = hn::IfThenElse(before, hn::Add(pk, hn::Mul(x, hn::Set(tag, w[j]))), own);
        }
        a += j + 1;
      }
      if constexpr (multiplies) {
        hn::BlendedStore(pk, all, tag, p + first);
      }
    } else {
      for (std::size_t j = first; j < first + rows; ++j) {
        row_in_block(j, first, a, lane[j - first]);
        a += j + 1;
      }
    }
  }

  // Row j of it, element by element.
  HWY_INLINE void row_in_block(std::size_t j, std::size_t first, double* a, const double* lanes) const {
    double lane[octet];
    for (std::size_t k = 0; k < octet; ++k) {
      lane[k] = lanes[k];
    }
    for (std::size_t k = first; k <= j; ++k) {
      if constexpr (updates) {
        a[k] = a[k] - u[j] * q[k] - q[j] * u[k];
      }
      if constexpr (multiplies) {
        lane[k - first] += a[k] * w[k];
        if (k < j) {
          p[k] += a[k] * w[j];
        }
      }
    }
    if constexpr (multiplies) {
      p[j] = joined(lane);
    }
  }

  void run(std::size_t all_rows, double* a) const {
    for (std::size_t first = 0; first < all_rows; first += octet) {
      const std::size_t rows = all_rows - first < octet ? all_rows - first : octet;
      double lane[octet][octet];
      std::size_t r = 0;
      double* at = a;
      for (; r + rows_at_once <= rows; r += rows_at_once) {
        left_of_block<rows_at_once>(first + r, first, at, lane + r);
        at += rows_at_once * (first + r) + rows_at_once * (rows_at_once + 1) / 2;
      }
      for (; r < rows; ++r) {
        left_of_block<1>(first + r, first, at, lane + r);
        at += first + r + 1;
      }
      in_block(first, rows, a, lane);
      a = at;
    }
  }
};

void update(std::size_t rows, double* a, const double* u, const double* q) {
  Reduction<true, false>{u, q, nullptr, nullptr}.run(rows, a);
}

void multiply(std::size_t rows, double* a, const double* w, double* p) {
  Reduction<false, true>{nullptr, nullptr, w, p}.run(rows, a);
}

void update_and_multiply(std::size_t rows, double* a, const double* u, const double* q, const double* w, double* p) {
  Reduction<true, true>{u, q, w, p}.run(rows, a);
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
