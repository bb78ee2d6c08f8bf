// SPDX-License-Identifier: MIT
// Inner loops of eaxevp: the reflectors of a packed triangle applied to the columns of V.
//
// A few columns at a time take all reflectors of a block whose rows fit the cache. One pass over these columns applies
// a reflector, v := v + t·u, and multiplies the result by the next one, s := u'·v. Included by eigen_kernel_unit.cpp
// only.
#pragma once

#include <cstddef>

#include "algorithms/eigen_kernel_table.h"
#include "algorithms/eigen_octet.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// A quarter of a small second-level cache's megabyte.
constexpr std::size_t reflector_block_elements = 32768;

// The columns that share their loads of the reflectors: as many as the registers hold sums for.
constexpr std::size_t columns_at_once = octet_registers == 4 ? 2 : 4;

struct Reflector {
  const double* u;
  std::size_t length;
};

// How many of the eight elements from k on are among the first n.
HWY_INLINE std::size_t of_octet(std::size_t n, std::size_t k) {
  return n <= k ? 0 : (n - k < octet ? n - k : octet);
}
HWY_INLINE std::size_t of_register(std::size_t n, std::size_t part) {
  return n <= part * register_lanes ? 0 : n - part * register_lanes;
}

// v := v + t·(now.u), then t := (next.u)·v, for Columns columns of V; next.length >= now.length, and a length of zero
// stands for no reflector. Whole octets are read and written back as long as they end above row n.
template <std::size_t Columns>
HWY_INLINE void reflect_and_multiply(std::size_t n, double* v, const Reflector& now, const Reflector& next, double* t) {
  Octet sum[Columns];
  Register factor[Columns];
  for (std::size_t j = 0; j < Columns; ++j) {
    sum[j] = zero_octet();
    factor[j] = hn::Set(tag, t[j]);
  }
  const std::size_t length = now.length > next.length ? now.length : next.length;
  std::size_t k = 0;
  const std::size_t common = now.length / octet * octet;
  if (next.length != 0) {
    for (; k < common; k += octet) {
      for (std::size_t part = 0; part < octet_registers; ++part) {
        const std::size_t at = k + part * register_lanes;
        const Register u = hn::LoadU(tag, now.u + at);
        const Register w = hn::LoadU(tag, next.u + at);
        for (std::size_t j = 0; j < Columns; ++j) {
          double* const x = v + j * n + at;
          const Register y = hn::Add(hn::LoadU(tag, x), hn::Mul(factor[j], u));
          hn::StoreU(y, tag, x);
          sum[j].part[part] = hn::Add(sum[j].part[part], hn::Mul(w, y));
        }
      }
    }
  } else {
    for (; k < common; k += octet) {
      for (std::size_t part = 0; part < octet_registers; ++part) {
        const std::size_t at = k + part * register_lanes;
        const Register u = hn::LoadU(tag, now.u + at);
        for (std::size_t j = 0; j < Columns; ++j) {
          double* const x = v + j * n + at;
          hn::StoreU(hn::Add(hn::LoadU(tag, x), hn::Mul(factor[j], u)), tag, x);
        }
      }
    }
  }
  for (; k < length && k + octet <= n; k += octet) {
    const std::size_t now_left = of_octet(now.length, k);
    const std::size_t next_left = of_octet(next.length, k);
    for (std::size_t part = 0; part < octet_registers; ++part) {
      const std::size_t at = k + part * register_lanes;
      const auto in_now = hn::FirstN(tag, of_register(now_left, part));
      const auto in_next = hn::FirstN(tag, of_register(next_left, part));
      const Register u = now_left != 0 ? hn::IfThenElseZero(in_now, hn::LoadU(tag, now.u + at)) : hn::Zero(tag);
      const Register w = next_left != 0 ? hn::IfThenElseZero(in_next, hn::LoadU(tag, next.u + at)) : hn::Zero(tag);
      for (std::size_t j = 0; j < Columns; ++j) {
        double* const x = v + j * n + at;
        Register y = hn::LoadU(tag, x);
        if (now_left != 0) {
          y = hn::IfThenElse(in_now, hn::Add(y, hn::Mul(factor[j], u)), y);
          hn::StoreU(y, tag, x);
        }
        sum[j].part[part] = hn::Add(sum[j].part[part], hn::Mul(w, hn::IfThenElseZero(in_next, y)));
      }
    }
  }
  if (k >= length) {
    for (std::size_t j = 0; j < Columns; ++j) {
      t[j] = joined(sum[j]);
    }
    return;
  }
  // The octet that ends below row n.
  for (std::size_t j = 0; j < Columns; ++j) {
    double lane[octet];
    for (std::size_t part = 0; part < octet_registers; ++part) {
      hn::StoreU(sum[j].part[part], tag, lane + part * register_lanes);
    }
    for (std::size_t i = k; i < length; ++i) {
      double& x = v[j * n + i];
      if (i < now.length) {
        x = x + t[j] * now.u[i];
      }
      if (i < next.length) {
        lane[i - k] += next.u[i] * x;
      }
    }
    t[j] = joined(lane);
  }
}

// Rows first..last-1 of the triangle, of which a is the first, on Columns columns of V.
template <std::size_t Columns>
void reflect_columns(std::size_t n, const double* a, std::size_t first, std::size_t last, double* v) {
  Reflector now{a, 0};
  double t[Columns] = {};
  for (std::size_t i = first; i < last; ++i) {
    const double h = a[i];
    if (h != 0.0) {
      const Reflector next{a, i};
      reflect_and_multiply<Columns>(n, v, now, next, t);
      for (double& factor : t) {
        factor = factor * (-1.0 / h);
      }
      now = next;
    }
    a += i + 1;
  }
  if (now.length != 0) {
    reflect_and_multiply<Columns>(n, v, now, {a, 0}, t);
  }
}

void reflect(std::size_t n, const double* a, double* v) {
  for (std::size_t first = 2; first < n;) {
    const double* const block = a + first * (first + 1) / 2;
    std::size_t last = first;
    for (std::size_t elements = 0; last < n && elements < reflector_block_elements; ++last) {
      elements += last + 1;
    }
    std::size_t j = 0;
    for (; j + columns_at_once <= n; j += columns_at_once) {
      reflect_columns<columns_at_once>(n, block, first, last, v + j * n);
    }
    for (; j < n; ++j) {
      reflect_columns<1>(n, block, first, last, v + j * n);
    }
    first = last;
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
