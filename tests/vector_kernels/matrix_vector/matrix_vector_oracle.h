// SPDX-License-Identifier: MIT
// The matrix-vector product in plain loops, one sum after the other, each in its fixed order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "support/numbers.h"
#include "vector_kernels/level1/strided_vectors.h"

namespace zortest {

struct Product {
  int m;
  int n;
  double alpha;
  std::vector<double> a;
  int lda;
  std::vector<double> x;
  int incx;
  std::size_t x_at;  // bytes past a boundary
  double beta;
  std::vector<double> y;
  int incy;

  double element(int i, int j) const { return a[static_cast<std::size_t>(i + j * lda)]; }
  bool contiguous() const { return incx == 1 && incy == 1; }
};

// `alone` terms before the pairs, or none in pairs.
inline constexpr int no_pairs = -1;

inline double paired_sum(double start, const std::vector<double>& term, int alone) {
  double lane[2] = {start, 0};
  std::size_t i = 0;
  if (alone != no_pairs && static_cast<int>(term.size()) >= alone + 2) {
    if (alone == 1) {
      lane[0] += term[i++];
    }
    for (; i + 2 <= term.size(); i += 2) {
      lane[0] += term[i];
      lane[1] += term[i + 1];
    }
    lane[0] += lane[1];
  }
  for (; i < term.size(); ++i) {
    lane[0] += term[i];
  }
  return lane[0];
}

inline int alone_by_address(std::size_t at) {
  return at % 8 != 0 ? no_pairs : at % 16 != 0 ? 1 : 0;
}

inline int alone_before_pairs(const Product& p, int first_of_x) {
  if (p.contiguous()) {
    return alone_by_address(p.x_at + 8 * static_cast<std::size_t>(first_of_x));
  }
  return p.incx == 0 ? no_pairs : 0;
}

// The piece of `rows` rows and `columns` columns of A from (row, column) on, with increments ≥ 0.
struct Piece {
  int row;
  int rows;
  int column;
  int columns;
};

inline void plain_piece(Product& p, Piece piece, double beta) {
  for (int i = piece.row; i < piece.row + piece.rows; ++i) {
    std::vector<double> term;
    for (int j = piece.column; j < piece.column + piece.columns; ++j) {
      term.push_back(p.element(i, j) * (p.alpha * p.x[place(j, p.n, p.incx)]));
    }
    double& y = p.y[place(i, p.m, p.incy)];
    y = paired_sum(beta * y, term, p.lda == 0 ? no_pairs : alone_before_pairs(p, piece.column));
  }
}

inline void transposed_piece(Product& p, Piece piece, double beta) {
  for (int j = piece.column; j < piece.column + piece.columns; ++j) {
    std::vector<double> term;
    for (int i = piece.row; i < piece.row + piece.rows; ++i) {
      term.push_back(p.element(i, j) * (p.alpha * p.x[place(i, p.m, p.incx)]));
    }
    double& y = p.y[place(j, p.n, p.incy)];
    y = paired_sum(beta * y, term, alone_before_pairs(p, piece.row));
  }
}

// Contiguous; rows in fours.
inline void grouped_piece(Product& p, Piece piece, double beta) {
  for (int j = piece.column; j < piece.column + piece.columns; ++j) {
    std::vector<double> g;
    for (int i = piece.row; i + 4 <= piece.row + piece.rows; i += 4) {
      const auto product = [&](int k) { return p.element(i + k, j) * p.x[static_cast<std::size_t>(i + k)]; };
      g.push_back(p.alpha * (((product(0) + product(1)) + product(2)) + product(3)));
    }
    double& y = p.y[static_cast<std::size_t>(j)];
    double first[2] = {beta * y, 0};
    double second[2] = {0, 0};
    std::size_t k = 0;
    for (; k + 8 <= g.size(); k += 8) {
      for (std::size_t lane = 0; lane < 2; ++lane) {
        first[lane] = (first[lane] + g[k + lane]) + g[k + 4 + lane];
        second[lane] = (second[lane] + g[k + 2 + lane]) + g[k + 6 + lane];
      }
    }
    y = k > 0 ? (first[0] + second[0]) + (first[1] + second[1]) : first[0];
    for (; k < g.size(); ++k) {
      y += g[k];
    }
  }
}

// Any increments but 0; alpha ≠ 0.
inline void general_product(Product& p, bool plain) {
  for (int i = 0; i < (plain ? p.m : p.n); ++i) {
    double& y = p.y[place(i, plain ? p.m : p.n, p.incy)];
    y = p.beta == 0 ? 0 : p.beta * y;
  }
  for (int j = 0; j < p.n; ++j) {
    if (plain) {
      const double xj = p.x[place(j, p.n, p.incx)];
      for (int i = 0; i < p.m && xj != 0; ++i) {
        p.y[place(i, p.m, p.incy)] += p.alpha * xj * p.element(i, j);
      }
    } else {
      std::vector<double> term;
      for (int i = 0; i < p.m; ++i) {
        term.push_back(p.element(i, j) * p.x[place(i, p.m, p.incx)]);
      }
      const int alone = p.m < 8 ? no_pairs : p.incx == 1 ? alone_by_address(p.x_at) : 0;
      p.y[place(j, p.n, p.incy)] += p.alpha * paired_sum(0, term, alone);
    }
  }
}

// The whole product, cut into its pieces; alpha ≠ 0.
inline void cut_product(Product& p, bool plain) {
  if (p.incx < 0 || p.incy < 0) {
    general_product(p, plain);
    return;
  }
  const int m8 = p.m / 8 * 8;
  for (int j = 0; j < p.n && m8 > 0; j += 64) {
    const int columns = p.n - j < 64 ? p.n - j : 64;
    if (plain) {
      plain_piece(p, {0, m8, j, columns}, j == 0 ? p.beta : 1);
    } else {
      (p.contiguous() ? grouped_piece : transposed_piece)(p, {0, m8, j, columns}, p.beta);
      transposed_piece(p, {m8, p.m - m8, j, columns}, 1);
    }
  }
  if (plain) {
    plain_piece(p, {m8, p.m - m8, 0, p.n}, p.beta);
  } else if (m8 == 0) {
    transposed_piece(p, {0, p.m, 0, p.n}, p.beta);
  }
}

// With something to do: what alpha = 0 leaves of the product, or all of it.
inline void scaled_or_cut(Product& p, bool plain) {
  if (p.alpha != 0) {
    cut_product(p, plain);
    return;
  }
  for (int i = 0; i < (plain ? p.m : p.n); ++i) {
    double& y = p.y[place(i, plain ? p.m : p.n, p.incy)];
    y = p.beta == 0 ? 0 : p.beta * y;
  }
}

inline void scaled_or_general(Product& p, bool plain) {
  if (p.alpha == 0) {
    scaled_or_cut(p, plain);
  } else {
    general_product(p, plain);
  }
}

}  // namespace zortest
