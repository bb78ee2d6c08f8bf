// SPDX-License-Identifier: MIT
// The sums and quotients of a strip of rows of the bordering Cholesky factorization. eaxfch2.cpp states the order of
// the operations, which no lane departs from.
//
// x holds the strip, one row a lane: element k of all its rows from x[k * Rows] on.
#pragma once

#include <cstdint>
#include <cstring>

#include "algorithms/eaxfch2_row_kernel.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

constexpr int octet = 2 * group_columns;

// Finished rows of L from row j0 on, counted from 0, j0 a multiple of eight.
struct RowOctet {
  const double* row[octet] = {};
  // L(j0+c, j0+k), k <= c, at c * octet + k. The rows behind are zeros: a column's products may run on into them.
  alignas(64) double corner[(2 * octet - 1) * octet] = {};

  void take(double* a, std::int64_t j0, std::int64_t rows) {
    for (std::int64_t c = 0; c < rows; ++c) {
      row[c] = packed_row(a, j0 + c + 1);
      // Of all eight rows whole lines: what follows the first ones' ends is of the next rows.
      const std::int64_t count = rows == octet ? octet : c + 1;
      std::memcpy(corner + c * octet, row[c] + j0, static_cast<std::size_t>(count) * sizeof(double));
    }
  }
};

// Sums of eight columns that are still to become elements of L, at x.
template <int Rows>
struct Quotients {
  alignas(64) double sums[octet * Rows];
  double* x = nullptr;
  const double* corner = nullptr;
};

// The two partial sums of an octet's columns.
template <int Rows>
struct PartialSums {
  alignas(64) double first[octet * Rows];
  alignas(64) double second[octet * Rows];
};

template <int Rows>
struct StripSums {
  using Tag = hn::CappedTag<double, Rows>;
  using Vec = hn::Vec<Tag>;
  static constexpr int lanes = hn::MaxLanes(Tag());
  static constexpr int parts = Rows / lanes;

  // Sums of columns j0 .. j0+Columns-1 up to the terms k < j0, from the strip's negated elements there. j0 is a
  // multiple of eight (or of four with at most four columns); element k of the row of column c is row[c][k * Step].
  // t[c * Rows ..] takes column c. What waits becomes quotients on the way, before t, which may be waiting.sums, is
  // written.
  template <int Columns, int Step>
  static HWY_INLINE void ordered(std::int64_t j0, const double* x, const double* const* row, double* t,
                                 Quotients<Rows>& waiting) {
    if constexpr (Columns == octet && quotients_beside_sums) {
      if (j0 >= terms_beside_quotients) {
        some<Columns, Step>(j0, j0, x, row, t, 0, &waiting);
        return;
      }
    }
    finish(waiting);
    if (j0 == sum_step) {
      constexpr int plain = Columns < group_columns ? Columns : group_columns;
      some<plain, Step>(j0, 0, x, row, t);
      if constexpr (Columns > plain) {
        some<Columns - plain, Step>(j0, j0, x, row + plain, t + plain * Rows, plain);
      }
    } else {
      some<Columns, Step>(j0, whole_eights(j0), x, row, t);
    }
  }

  // The same for an octet that must wait, in pieces: the beginning, ..
  static void begin(std::int64_t j0, const double* x, PartialSums<Rows>& sums) {
    const Tag d;
    for (std::int64_t at = 0; at < octet * Rows; at += lanes) {
      hn::Store(hn::Neg(hn::Load(d, x + j0 * Rows + at)), d, sums.first + at);
      hn::Store(hn::Zero(d), d, sums.second + at);
    }
  }

  // .. the terms from .. to-1, a multiple of eight and sixteen at least, ..
  static void add_piece(std::int64_t from, std::int64_t to, const double* x, const double* const* row,
                        PartialSums<Rows>& sums, Quotients<Rows>& waiting) {
    constexpr int at_once = pass_columns;
    for (int part = 0; part < parts; part += pass_parts) {
      for (int c = 0; c < octet; c += at_once) {
        double* const first = sums.first + c * Rows + part * lanes;
        double* const second = sums.second + c * Rows + part * lanes;
        if constexpr (both_sums_at_once) {
          Vec sum[pass_parts][at_once];
          Vec other[pass_parts][at_once];
          fetch(first, sum);
          fetch(second, other);
          add_both<at_once, 1>(from, to, x + part * lanes, row + c, sum, other, &waiting);
          keep(sum, first);
          keep(other, second);
        } else {
          add_in_turn<at_once, 1>(from, to, x + part * lanes, row + c, first, second);
        }
      }
    }
  }

  // .. and the end.
  static void end(const PartialSums<Rows>& sums, double* t) {
    const Tag d;
    for (std::int64_t at = 0; at < octet * Rows; at += lanes) {
      hn::Store(hn::Add(hn::Load(d, sums.first + at), hn::Load(d, sums.second + at)), d, t + at);
    }
  }

  static constexpr bool must_wait(std::int64_t j0) { return quotients_beside_sums && j0 >= terms_beside_quotients; }

  // Elements of L, from x on, of the columns of an octet with this corner: the terms k >= j0 of the sums t and the
  // divisions.
  template <int Columns>
  static HWY_INLINE void divide(double* x, const double* corner, const double* t) {
    for (int part = 0; part < parts; ++part) {
      Vec v[Columns];
      fetch_columns(t, part, v);
#pragma GCC unroll 8
      for (int c = 0; c < Columns; ++c) {
        const Tag d;
        v[c] = hn::Div(v[c], hn::Set(d, -corner[c * octet + c]));
#pragma GCC unroll 8
        for (int q = c + 1; q < Columns; ++q) {
          v[q] = hn::Add(v[q], hn::Mul(v[c], hn::Set(d, corner[q * octet + c])));
        }
        hn::Store(v[c], d, x + c * Rows + part * lanes);
      }
    }
  }

  static void finish(Quotients<Rows>& waiting) {
    if (waiting.x != nullptr) {
      divide<octet>(waiting.x, waiting.corner, waiting.sums);
      waiting.x = nullptr;
    }
  }

 private:
  // One pass over the terms: with 32 registers both partial sums of eight columns, with 16 registers one partial sum
  // of eight vectors.
  static constexpr bool both_sums_at_once = hn::MaxLanes(hn::ScalableTag<double>()) == 8;
  static constexpr int pass_parts = parts >= 2 ? 2 : 1;
  static constexpr int pass_columns = 8 / pass_parts;
  // With 32 registers a strip's divisions, each of which waits for the one before, run beside the next sums.
  static constexpr bool quotients_beside_sums = both_sums_at_once && Rows == octet;
  static constexpr std::int64_t terms_beside_quotients = 2 * octet;
  static constexpr std::int64_t terms_of_pass = 256;  // stay in the first-level cache for the other partial sum

  // Of which `whole` terms are taken in two partial sums; `skipped` columns lie between j0 and the first.
  template <int Columns, int Step>
  static HWY_INLINE void some(std::int64_t j0, std::int64_t whole, const double* x, const double* const* row, double* t,
                              int skipped = 0, Quotients<Rows>* waiting = nullptr) {
    constexpr int at_once = Columns < pass_columns ? Columns : pass_columns;
    static_assert(Columns % at_once == 0);
    const Tag d;
    for (int part = 0; part < parts; part += pass_parts) {
      for (int first = 0; first < Columns; first += at_once) {
        Vec sum[pass_parts][at_once];
#pragma GCC unroll 2
        for (int v = 0; v < pass_parts; ++v) {
#pragma GCC unroll 8
          for (int c = 0; c < at_once; ++c) {
            sum[v][c] = hn::Neg(hn::Load(d, x + (j0 + skipped + first + c) * Rows + (part + v) * lanes));
          }
        }
        add_whole_eights<at_once, Step>(whole, x + part * lanes, row + first, sum, waiting);
        for (std::int64_t k = whole; k < j0; ++k) {
          add_term<at_once, Step>(k, x + part * lanes, row + first, sum);
        }
#pragma GCC unroll 2
        for (int v = 0; v < pass_parts; ++v) {
#pragma GCC unroll 8
          for (int c = 0; c < at_once; ++c) {
            hn::Store(sum[v][c], d, t + (first + c) * Rows + (part + v) * lanes);
          }
        }
      }
    }
  }

  // sum[v][c] := sum[v][c] + x(k)·row[c](k)
  template <int Columns, int Step>
  static HWY_INLINE void add_term(std::int64_t k, const double* x, const double* const* row,
                                  Vec (&sum)[pass_parts][Columns]) {
    const Tag d;
    Vec xk[pass_parts];
#pragma GCC unroll 2
    for (int v = 0; v < pass_parts; ++v) {
      xk[v] = hn::Load(d, x + k * Rows + v * lanes);
    }
#pragma GCC unroll 8
    for (int c = 0; c < Columns; ++c) {
      const Vec l = hn::Set(d, row[c][k * Step]);
#pragma GCC unroll 2
      for (int v = 0; v < pass_parts; ++v) {
        sum[v][c] = hn::Add(sum[v][c], hn::Mul(xk[v], l));
      }
    }
  }

  // sum[v][c] := sum[v][c] + Σ x(k)·row[c](k), k < whole, in two partial sums.
  template <int Columns, int Step>
  static HWY_INLINE void add_whole_eights(std::int64_t whole, const double* x, const double* const* row,
                                          Vec (&sum)[pass_parts][Columns], Quotients<Rows>* waiting) {
    if (whole == 0) {
      return;  // a short sum has no second part, and adding its zero would turn -0 into +0
    }
    if constexpr (both_sums_at_once) {
      Vec second[pass_parts][Columns];
      set_zero(second);
      add_both<Columns, Step>(0, whole, x, row, sum, second, waiting);
      add(sum, second);
    } else {
      alignas(64) double kept[2][octet * Rows];
      Vec second[pass_parts][Columns];
      set_zero(second);
      keep(sum, kept[0]);
      keep(second, kept[1]);
      add_in_turn<Columns, Step>(0, whole, x, row, kept[0], kept[1]);
      fetch(kept[0], sum);
      fetch(kept[1], second);
      add(sum, second);
    }
  }

  // The terms begin .. end-1 of both partial sums.
  template <int Columns, int Step>
  static HWY_INLINE void add_both(std::int64_t begin, std::int64_t end, const double* x, const double* const* row,
                                  Vec (&sum)[pass_parts][Columns], Vec (&second)[pass_parts][Columns],
                                  Quotients<Rows>* waiting) {
    std::int64_t k = begin;
    if constexpr (Columns == octet && quotients_beside_sums) {
      if (waiting != nullptr && waiting->x != nullptr) {
        Vec v[octet];
        fetch_columns(waiting->sums, 0, v);
        const double* corner = waiting->corner;
        double* to = waiting->x;
        const auto quotients = [&](auto columns, int count) HWY_ATTR {
#pragma GCC unroll 1
          for (int c = 0; c < count; ++c, corner += octet + 1, to += Rows, k += 2) {
            hn::Store(next_quotient<columns.value>(corner, v), Tag(), to);
            add_term<Columns, Step>(k, x, row, sum);
            add_term<Columns, Step>(k + 1, x, row, second);
          }
        };
        quotients(Number<octet>(), octet - group_columns);
        quotients(Number<group_columns>(), group_columns);
        waiting->x = nullptr;
      }
    }
    for (; k < end; k += 2) {
      add_term<Columns, Step>(k, x, row, sum);
      add_term<Columns, Step>(k + 1, x, row, second);
    }
  }

  // The same, one partial sum after the other, with what they come to at first and second.
  template <int Columns, int Step>
  static HWY_INLINE void add_in_turn(std::int64_t begin, std::int64_t end, const double* x, const double* const* row,
                                     double* first, double* second) {
    for (std::int64_t k = begin; k < end; k += terms_of_pass) {
      const std::int64_t until = k + terms_of_pass < end ? k + terms_of_pass : end;
      add_every_other<Columns, Step>(k, until, x, row, first);
      add_every_other<Columns, Step>(k + 1, until, x, row, second);
    }
  }

  // Not part of its caller: there the sums would not stay in registers.
  template <int Columns, int Step>
  static HWY_NOINLINE void add_every_other(std::int64_t begin, std::int64_t end, const double* x,
                                           const double* const* row, double* kept) {
    const double* r[Columns];
#pragma GCC unroll 8
    for (int c = 0; c < Columns; ++c) {
      r[c] = row[c];
    }
    Vec sum[pass_parts][Columns];
    fetch(kept, sum);
    for (std::int64_t k = begin; k < end; k += 2) {
      add_term<Columns, Step>(k, x, r, sum);
    }
    keep(sum, kept);
  }

  template <int Columns>
  static HWY_INLINE void fetch_columns(const double* t, int part, Vec (&v)[Columns]) {
#pragma GCC unroll 8
    for (int c = 0; c < Columns; ++c) {
      v[c] = hn::Load(Tag(), t + c * Rows + part * lanes);
    }
  }

  template <int Value>
  struct Number {
    static constexpr int value = Value;
  };

  // The first column's quotient, and its products in the columns after it, which move up by one.
  template <int Left>
  static HWY_INLINE Vec next_quotient(const double* corner, Vec (&v)[octet]) {
    const Tag d;
    const Vec l = hn::Div(v[0], hn::Set(d, -corner[0]));
#pragma GCC unroll 8
    for (int q = 1; q < Left; ++q) {
      v[q - 1] = hn::Add(v[q], hn::Mul(l, hn::Set(d, corner[q * octet])));
    }
    return l;
  }

  template <int Columns>
  static HWY_INLINE void set_zero(Vec (&sum)[pass_parts][Columns]) {
#pragma GCC unroll 2
    for (int v = 0; v < pass_parts; ++v) {
#pragma GCC unroll 8
      for (int c = 0; c < Columns; ++c) {
        sum[v][c] = hn::Zero(Tag());
      }
    }
  }

  template <int Columns>
  static HWY_INLINE void add(Vec (&sum)[pass_parts][Columns], const Vec (&second)[pass_parts][Columns]) {
#pragma GCC unroll 2
    for (int v = 0; v < pass_parts; ++v) {
#pragma GCC unroll 8
      for (int c = 0; c < Columns; ++c) {
        sum[v][c] = hn::Add(sum[v][c], second[v][c]);
      }
    }
  }

  template <int Columns>
  static HWY_INLINE void keep(const Vec (&sum)[pass_parts][Columns], double* kept) {
#pragma GCC unroll 2
    for (int v = 0; v < pass_parts; ++v) {
#pragma GCC unroll 8
      for (int c = 0; c < Columns; ++c) {
        hn::Store(sum[v][c], Tag(), kept + c * Rows + v * lanes);
      }
    }
  }

  template <int Columns>
  static HWY_INLINE void fetch(const double* kept, Vec (&sum)[pass_parts][Columns]) {
#pragma GCC unroll 2
    for (int v = 0; v < pass_parts; ++v) {
#pragma GCC unroll 8
      for (int c = 0; c < Columns; ++c) {
        sum[v][c] = hn::Load(Tag(), kept + c * Rows + v * lanes);
      }
    }
  }
};

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
