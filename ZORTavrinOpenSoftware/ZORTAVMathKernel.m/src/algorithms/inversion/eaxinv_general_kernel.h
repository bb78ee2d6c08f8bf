// SPDX-License-Identifier: MIT
// Inversion with exchanges of columns, panel by panel. Included by inversion_kernel_unit.cpp only.
//
// A panel's pivots are chosen from its rows alone: eight rows at a time take the steps before them, then their own
// steps one by one, each after the search for its pivot. Until the panel is done, its rows hold the multipliers.
#pragma once

#include <cstdint>
#include <cstring>

#include "algorithms/inversion/eaxinv_panel_kernel.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// Wider matrices keep the rows of a panel in their place, where they no longer fit the second-level cache anyway.
constexpr Index buffered_columns = 2048;
static_assert(buffered_columns * strip_rows <= block_strips * strip_size);

class GeneralInversion {
 public:
  GeneralInversion(Index n, Index lda, double* a, std::int32_t* ipiv) : n_(n), lda_(lda), a_(a), ipiv_(ipiv) {}

  void invert() {
    for (Index j = 0; j < n_; ++j) {
      ipiv_[j] = static_cast<std::int32_t>(j + 1);
    }
    for (first_ = 0; first_ < n_; first_ += block_.pivots) {
      block_.pivots = n_ - first_ < panel_pivots ? n_ - first_ : panel_pivots;
      std::memset(block_.t, 0, sizeof block_.t);
      block_.zeros = Zeros::none;
      for (Index s = 0; s < block_.pivots; s += strip_rows) {
        const Index rows = block_.pivots - s < strip_rows ? block_.pivots - s : strip_rows;
        eliminate_rows(s, rows);
        gather_multipliers(s, rows);
      }
      finish_block();
      update_rows(0, first_);
      update_rows(first_ + block_.pivots, n_);
      finish_rows();
    }
    restore_rows();
  }

 private:
  // Rows of the panel: in a buffer, so that columns are not far apart, or, of very wide matrices, in their place.
  struct Rows {
    double* at;
    Index stride;
    double& operator()(Index i, Index j) const { return at[i + j * stride]; }
  };

  double* column(Index j) const { return a_ + j * lda_; }

  // f(first column, columns) for tiles of all columns outside the panel.
  template <class Function>
  void for_each_tile(const Function& f) const {
    const Index after = first_ + block_.pivots;
    for (Index j = 0; j < first_; j += tile_columns) {
      f(j, first_ - j < tile_columns ? first_ - j : tile_columns);
    }
    for (Index j = after; j < n_; j += tile_columns) {
      f(j, n_ - j < tile_columns ? n_ - j : tile_columns);
    }
  }

  // The multipliers that rows s .. s+rows-1 of the panel add to those among the panel's own columns up to there.
  void gather_multipliers(Index s, Index rows) {
    for (Index j = 0; j < s + rows; ++j) {
      const double* const from = column(first_ + j) + first_;
      for (Index p = j < s ? s : 0; p < s + rows; ++p) {
        if (p != j) {
          block_.multiplier(p, j) = from[p];
          block_.zeros = from[p] == 0 ? Zeros::some : block_.zeros;
        }
      }
    }
  }

  // Rows s .. s+rows-1 of the panel: the panel's steps before s, then their own.
  void eliminate_rows(Index s, Index rows) {
    double* const place = a_ + first_ + s;
    const bool buffered = n_ <= buffered_columns;
    const Rows x = buffered ? Rows{strips_, strip_rows} : Rows{place, lda_};
    if (buffered) {
      load_strip(n_, rows, place, 1, lda_, strips_);
    }
    if (s > 0) {
      apply_steps_before(s, rows, x);
    }
    for (Index q = 0; q < rows; ++q) {
      const Index k = first_ + s + q;
      const Index p = pivot_column(x, q, k);
      if (p != k) {
        exchange_columns(k, p);
        if (buffered) {
          for (Index i = 0; i < strip_rows; ++i) {
            exchange(x(i, k), x(i, p));
          }
        }
      }
      const double r = 1 / x(q, k);
      block_.r[s + q] = r;
      for (Index i = q + 1; i < rows; ++i) {
        x(i, k) = -r * x(i, k);
      }
      if (rows == strip_rows) {
        eliminate_below(x, q, k);
      } else {
        eliminate_few_below(x, q, k, rows);
      }
    }
    if (buffered) {
      store_strip(n_, rows, strips_, place, 1, lda_);
    }
  }

  void apply_steps_before(Index s, Index rows, const Rows& x) {
    alignas(64) double strip[strip_size];
    load_strip(s, rows, &x(0, first_), 1, x.stride, strip);
    solve_strip<Solve::scaled>(s, block_.t, block_.zeros, block_.r, strip, strip);
    store_strip(s, rows, strip, &x(0, first_), 1, x.stride);
    const Index pivots = block_.pivots;
    block_.pivots = s;
    finish_column_strip(block_, strip, rows, &x(0, first_), x.stride);
    alignas(64) double factors[panel_pivots * tile_columns];
    for_each_tile([&](Index j, Index columns) {
      const Zeros zeros = pack_factors(s, columns, column(j) + first_, 1, lda_, factors);
      update_tile_of({rows, columns}, zeros, s, strip, factors, &x(0, j), x.stride);
    });
    block_.pivots = pivots;
  }

  // The last of the largest elements of row q from column k on, if the one in column k is smaller; else k.
  Index pivot_column(const Rows& x, Index q, Index k) const {
    double largest = 0;
    Index p = k;
    for (Index j = k; j < n_; ++j) {
      const double magnitude = __builtin_fabs(x(q, j));
      if (magnitude >= largest) {
        largest = magnitude;
        p = j;
      }
    }
    return largest > __builtin_fabs(x(q, k)) ? p : k;
  }

  static void exchange(double& x, double& y) {
    const double old = x;
    x = y;
    y = old;
  }

  void exchange_columns(Index k, Index p) const {
    const std::int32_t old = ipiv_[k];
    ipiv_[k] = ipiv_[p];
    ipiv_[p] = old;
    double* __restrict const x = column(k);
    double* __restrict const y = column(p);
    for (Index i = 0; i < n_; ++i) {
      exchange(x[i], y[i]);
    }
  }

  // Step k, row q of the eight, on those below it.
  void eliminate_below(const Rows& x, Index q, Index k) const {
    const Tag d;
    constexpr int vectors = static_cast<int>(strip_rows / lanes);
    Vec c[vectors];
    hn::Mask<Tag> done[vectors];
    for (int v = 0; v < vectors; ++v) {
      const Index above = q + 1 - v * lanes;
      c[v] = hn::LoadU(d, &x(v * lanes, k));
      done[v] = hn::FirstN(d, static_cast<std::size_t>(above < 0 ? 0 : above < lanes ? above : lanes));
    }
    for (Index j = 0; j < n_; ++j) {
      double* const to = &x(0, j);
      const double t = to[q];
      if (t == 0 || j == k) {
        continue;
      }
      for (int v = static_cast<int>(q / lanes); v < vectors; ++v) {
        const Vec old = hn::LoadU(d, to + v * lanes);
        hn::StoreU(hn::IfThenElse(done[v], old, hn::Add(old, hn::Mul(c[v], hn::Set(d, t)))), d, to + v * lanes);
      }
    }
  }

  void eliminate_few_below(const Rows& x, Index q, Index k, Index rows) const {
    for (Index j = 0; j < n_; ++j) {
      const double t = x(q, j);
      for (Index i = q + 1; i < rows && t != 0 && j != k; ++i) {
        x(i, j) = x(i, j) + t * x(i, k);
      }
    }
  }

  // The panel's own rows and columns: row i begins with step i, from the multipliers.
  void finish_block() {
    const Index pivots = block_.pivots;
    std::memset(block_.c, 0, sizeof block_.c);
    for (Index p = 0; p < pivots; ++p) {
      double* __restrict const cp = block_.a[p];
      const double r = block_.r[p];
      cp[p] = 0;
      for (Index i = 0; i <= p; ++i) {
        cp[i] = -r * cp[i];
        block_.column(i, p) = cp[i];
      }
      for (Index j = 0; j < pivots; ++j) {
        if (j == p) {
          continue;
        }
        const double t = block_.multiplier(p, j);
        double* __restrict const aj = block_.a[j];
        aj[p] = t * r;
        if (t != 0) {
          for (Index i = 0; i <= p; ++i) {
            aj[i] = aj[i] + t * cp[i];
          }
        }
      }
      cp[p] = r;
    }
  }

  // All columns of the rows begin .. end-1, which lie outside the panel.
  void update_rows(Index begin, Index end) {
    const Index pivots = block_.pivots;
    alignas(64) double factors[panel_pivots * tile_columns];
    for (Index top = begin; top < end; top += block_rows) {
      const Index bottom = end - top < block_rows ? end : top + block_rows;
      for (Index i = top; i < bottom; i += strip_rows) {
        const Index rows = bottom - i < strip_rows ? bottom - i : strip_rows;
        double* const strip = strips_ + (i - top) * panel_pivots;
        double* const own = column(first_) + i;
        load_strip(pivots, rows, own, 1, lda_, strip);
        solve_strip<Solve::scaled>(pivots, block_.t, block_.zeros, block_.r, strip, strip);
        store_strip(pivots, rows, strip, own, 1, lda_);
        finish_column_strip(block_, strip, rows, own, lda_);
      }
      for_each_tile([&](Index j, Index columns) {
        const Zeros zeros = pack_factors(pivots, columns, column(j) + first_, 1, lda_, factors);
        for (Index i = top; i < bottom; i += strip_rows) {
          const Index rows = bottom - i < strip_rows ? bottom - i : strip_rows;
          update_tile_of({rows, columns}, zeros, pivots, strips_ + (i - top) * panel_pivots, factors, column(j) + i,
                         lda_);
        }
      });
    }
  }

  void finish_rows() {
    const Index pivots = block_.pivots;
    alignas(64) double factors[panel_pivots * tile_columns];
    for_each_tile([&](Index j, Index columns) {
      const Zeros zeros = pack_factors(pivots, columns, column(j) + first_, 1, lda_, factors);
      finish_row_tile(block_, block_.r, zeros, factors, columns, column(j) + first_, lda_);
    });
    for (Index j = 0; j < pivots; ++j) {
      std::memcpy(column(first_ + j) + first_, block_.a[j], static_cast<std::size_t>(pivots) * sizeof *a_);
    }
  }

  // Columns were exchanged, so rows of the inverse are. ipiv holds for each row which one it is exchanged with.
  void restore_rows() const {
    for (Index i = 0; i < n_; ++i) {
      Index j = i;
      while (ipiv_[j] != i + 1) {
        ++j;
      }
      ipiv_[j] = ipiv_[i];
      ipiv_[i] = static_cast<std::int32_t>(j);
    }
    for (Index c = 0; c < n_; ++c) {
      double* const x = column(c);
      for (Index i = 0; i < n_; ++i) {
        exchange(x[i], x[ipiv_[i]]);
      }
    }
    for (Index i = 0; i < n_; ++i) {
      ipiv_[i] = static_cast<std::int32_t>(i + 1);
    }
  }

  Index n_;
  Index lda_;
  Index first_ = 0;  // of the panel's rows and columns
  double* a_;
  std::int32_t* ipiv_;
  PanelBlock block_;
  alignas(64) double strips_[block_strips * strip_size];
};

void invert_general(std::int64_t n, std::int64_t lda, double* a, std::int32_t* ipiv) {
  GeneralInversion(n, lda, a, ipiv).invert();
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
