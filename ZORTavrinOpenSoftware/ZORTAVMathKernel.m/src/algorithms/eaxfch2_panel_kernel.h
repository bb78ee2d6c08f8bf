// SPDX-License-Identifier: MIT
// A panel of strips of the bordering Cholesky factorization: they take the rows above eight at a time, one strip after
// the other while these rows are in the caches. Nothing of a strip goes back to the triangle before the strips above it
// are done, so that the rows after a refused one are left as they were.
#pragma once

#include <cstdint>

#include "algorithms/eaxfch2_strip_kernel.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

constexpr std::int64_t long_strip = 8;
constexpr std::int64_t short_strip = 4;

class RowPanel {
 public:
  static constexpr std::int64_t most_rows = 32;

  // Strips for the rows base .. base+rows-1, counted from 0; both are multiples of four. The panel takes
  // rows * (base + rows) elements at x. Rows before `begin` hold L, rows from `end` on are not touched.
  RowPanel(double* a, std::int64_t base, std::int64_t rows, std::int64_t begin, std::int64_t end, double* x)
      : a_(a), base_(base) {
    // A strip of eight begins at a multiple of eight.
    std::int64_t row = base;
    const auto open = [&](auto& strip, std::int64_t count) {
      strip.load(a, row, begin, end, x);
      row += count;
      x += count * row;
    };
    if (row % long_strip != 0) {
      open(first_, short_strip);
      has_first_ = true;
    }
    for (; row + long_strip <= base + rows; ++longs_) {
      open(long_[longs_], long_strip);
    }
    if (row < base + rows) {
      open(last_, short_strip);
      has_last_ = true;
    }
  }

  // Returns the number of the refused row, counted from 1, or 0.
  std::int64_t factor(double tol, double* refused) {
    const std::int64_t above = base_ / octet * octet;
    int at = 0;
    for (std::int64_t j0 = 0; j0 < above; j0 += octet, at = 1 - at) {
      rows_[at].take(a_, j0, octet);
      if (base_ < near_rows || j0 < 2 * terms_of_piece) {
        each([&](auto& strip, auto& waiting) {
          strip.template columns<octet>(rows_[at], j0, waiting);
          return std::int64_t{0};
        });
      } else {
        in_pieces(rows_[at], j0);
      }
    }
    return each([&](auto& strip, auto& waiting) {
      std::int64_t j0 = above;
      for (; j0 + octet <= strip.base(); j0 += octet, at = 1 - at) {
        rows_[at].take(a_, j0, octet);
        strip.template columns<octet>(rows_[at], j0, waiting);
      }
      if (j0 < strip.base()) {
        rows_[at].take(a_, j0, group_columns);
        strip.template columns<group_columns>(rows_[at], j0, waiting);
      }
      return strip.own_triangle(tol, refused, waiting);
    });
  }

 private:
  // From here on the rows above come from the third-level cache or from memory. There all strips take a piece of eight
  // of them while it is in the first-level cache, so that what comes from afar comes at an even pace.
  static constexpr std::int64_t near_rows = 1536;
  static constexpr std::int64_t terms_of_piece = 64;

  void in_pieces(const RowOctet& above, std::int64_t j0) {
    each([&](auto& strip, auto&) {
      strip.begin_octet(j0);
      return std::int64_t{0};
    });
    for (std::int64_t k = 0; k < j0;) {
      const std::int64_t end = j0 - k < 2 * terms_of_piece ? j0 : k + terms_of_piece;
      each([&](auto& strip, auto& waiting) {
        strip.add_piece(above, k, end, waiting);
        if (end == j0) {
          strip.end_octet(above, j0, waiting);
        }
        return std::int64_t{0};
      });
      k = end;
    }
  }

  // The strips from the first row down, until one returns other than 0.
  template <class Function>
  HWY_INLINE std::int64_t each(const Function& function) {
    std::int64_t result = has_first_ ? function(first_, waiting_short_) : 0;
    for (std::int64_t s = 0; s < longs_ && result == 0; ++s) {
      result = function(long_[s], waiting_);
    }
    return result == 0 && has_last_ ? function(last_, waiting_short_) : result;
  }

  double* a_;
  std::int64_t base_;
  std::int64_t longs_ = 0;
  bool has_first_ = false;
  bool has_last_ = false;
  RowStrip<short_strip> first_;
  RowStrip<long_strip> long_[most_rows / long_strip];
  RowStrip<short_strip> last_;
  RowOctet rows_[2];  // quotients may wait while the next octet begins
  Quotients<long_strip> waiting_;
  Quotients<short_strip> waiting_short_;  // never any
};

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
