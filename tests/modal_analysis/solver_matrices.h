// SPDX-License-Identifier: MIT
// Matrices for the tests of the solver, with known spectra where there is one.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <map>
#include <numbers>
#include <vector>

#include "structure/symmetric_matrix.h"
#include "support/numbers.h"

namespace modaltest {

// Entries of the lower triangle by row and column, from 0.
class Builder {
 public:
  explicit Builder(std::int32_t order) : rows_(static_cast<std::size_t>(order)) {
    for (std::int32_t i = 0; i < order; ++i) {
      add(i, i, 0.0);
    }
  }
  void add(std::int32_t i, std::int32_t j, double value) {
    rows_[static_cast<std::size_t>(std::max(i, j))][std::min(i, j)] += value;
  }
  modal::SymmetricMatrix matrix() const {
    modal::SymmetricMatrix a;
    a.order = static_cast<std::int32_t>(rows_.size());
    for (const auto& row : rows_) {
      for (const auto& [column, value] : row) {
        a.column.push_back(column + 1);
        a.value.push_back(value);
      }
      a.row_end.push_back(static_cast<std::int32_t>(a.value.size()));
    }
    return a;
  }

 private:
  std::vector<std::map<std::int32_t, double>> rows_;
};

inline modal::SymmetricMatrix diagonal(const std::vector<double>& d) {
  Builder b(static_cast<std::int32_t>(d.size()));
  for (std::size_t i = 0; i < d.size(); ++i) {
    b.add(static_cast<std::int32_t>(i), static_cast<std::int32_t>(i), d[i]);
  }
  return b.matrix();
}

inline modal::SymmetricMatrix identity(std::int32_t order) {
  return diagonal(std::vector<double>(static_cast<std::size_t>(order), 1.0));
}

// The five-point Laplacian on nx × ny inner points, fixed all around.
inline modal::SymmetricMatrix laplacian(std::int32_t nx, std::int32_t ny) {
  Builder b(nx * ny);
  for (std::int32_t i = 0; i < nx; ++i) {
    for (std::int32_t j = 0; j < ny; ++j) {
      b.add(i * ny + j, i * ny + j, 4.0);
      if (i > 0) {
        b.add(i * ny + j, (i - 1) * ny + j, -1.0);
      }
      if (j > 0) {
        b.add(i * ny + j, i * ny + j - 1, -1.0);
      }
    }
  }
  return b.matrix();
}

// 4 − 2·cos(iπ/(nx+1)) − 2·cos(jπ/(ny+1)), ascending.
inline std::vector<double> laplacian_eigenvalues(std::int32_t nx, std::int32_t ny) {
  std::vector<double> value;
  for (std::int32_t i = 1; i <= nx; ++i) {
    for (std::int32_t j = 1; j <= ny; ++j) {
      const double x = std::sin(0.5 * i * std::numbers::pi / (nx + 1));
      const double y = std::sin(0.5 * j * std::numbers::pi / (ny + 1));
      value.push_back(4.0 * (x * x + y * y));
    }
  }
  std::sort(value.begin(), value.end());
  return value;
}

// A mesh of nx × ny squares, every node joined with its eight neighbours and bearing two unknowns, as of displacements;
// positive definite by its diagonal.
inline modal::SymmetricMatrix plate_pattern(std::int32_t nx, std::int32_t ny) {
  Builder b(2 * nx * ny);
  const auto join = [&](std::int32_t v, std::int32_t w) {
    for (std::int32_t c = 0; c < 2; ++c) {
      for (std::int32_t d = 0; d < 2; ++d) {
        if (v != w || c >= d) {
          b.add(2 * v + c, 2 * w + d, v != w ? -1.0 : (c == d ? 18.0 : 0.5));
        }
      }
    }
  };
  for (std::int32_t i = 0; i < nx; ++i) {
    for (std::int32_t j = 0; j < ny; ++j) {
      const std::int32_t v = i * ny + j;
      join(v, v);
      if (j > 0) {
        join(v, v - 1);
      }
      for (std::int32_t k = std::max(j - 1, 0); i > 0 && k <= std::min(j + 1, ny - 1); ++k) {
        join(v, v - ny + (k - j));
      }
    }
  }
  return b.matrix();
}

// Random symmetric with about `per_row` entries a row; dominant diagonals of the given sign.
inline modal::SymmetricMatrix random_dominant(std::int32_t order, double per_row, std::uint64_t seed,
                                              const std::function<double(std::int32_t)>& sign = {}) {
  zortest::Random random(seed);
  Builder b(order);
  for (std::int32_t e = 0; e < static_cast<std::int32_t>(per_row * order / 2); ++e) {
    const std::int32_t i = random.integer(0, order - 1);
    const std::int32_t j = random.integer(0, order - 1);
    if (i != j) {
      const double value = random.uniform();
      b.add(i, j, value);
      b.add(i, i, (sign ? sign(i) : 1.0) * std::abs(value));
      b.add(j, j, (sign ? sign(j) : 1.0) * std::abs(value));
    }
  }
  for (std::int32_t i = 0; i < order; ++i) {
    b.add(i, i, (sign ? sign(i) : 1.0) * 0.1);
  }
  return b.matrix();
}

// y := A·x, entry by entry.
inline std::vector<double> times(const modal::SymmetricMatrix& a, const double* x) {
  std::vector<double> y(static_cast<std::size_t>(a.order), 0.0);
  for (std::size_t i = 0; i < y.size(); ++i) {
    for (auto p = static_cast<std::size_t>(a.row_end[i]); p < static_cast<std::size_t>(a.row_end[i + 1]); ++p) {
      const auto j = static_cast<std::size_t>(a.column[p] - 1);
      y[i] += a.value[p] * x[j];
      if (i != j) {
        y[j] += a.value[p] * x[i];
      }
    }
  }
  return y;
}

}  // namespace modaltest
