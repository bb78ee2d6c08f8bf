// SPDX-License-Identifier: MIT
// Matrices for the tests of the solver, with known spectra where there is one.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <numbers>
#include <vector>

#include "factorization/assembly_tree.h"
#include "factorization/compressed_graph.h"
#include "factorization/index.h"
#include "factorization/nested_dissection.h"
#include "modes/modal_solver.h"
#include "structure/symmetric_matrix.h"
#include "support/numbers.h"

namespace modaltest {

struct Quiet : modal::Progress {
  void step(const char* /*phase*/, double /*done*/, double /*total*/) override {}
};

struct Entry {
  std::int32_t i;
  std::int32_t j;
  double value;
};

// Entries of the lower triangle by row and column, from 0; the diagonal is always stored.
class Builder {
 public:
  explicit Builder(std::int32_t order, const std::vector<Entry>& entries = {}) : rows_(modal::at(order)) {
    for (std::int32_t i = 0; i < order; ++i) {
      add(i, i, 0.0);
    }
    for (const Entry& e : entries) {
      add(e.i, e.j, e.value);
    }
  }
  void add(std::int32_t i, std::int32_t j, double value) { rows_[modal::at(std::max(i, j))][std::min(i, j)] += value; }
  // A spring between two unknowns.
  void join(std::int32_t i, std::int32_t j, double stiffness) {
    add(i, i, stiffness);
    add(j, j, stiffness);
    add(i, j, -stiffness);
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

inline modal::SymmetricMatrix matrix(std::int32_t order, const std::vector<Entry>& entries) {
  return Builder(order, entries).matrix();
}

inline modal::SymmetricMatrix diagonal(const std::vector<double>& d) {
  Builder b(static_cast<std::int32_t>(d.size()));
  for (std::int32_t i = 0; i < static_cast<std::int32_t>(d.size()); ++i) {
    b.add(i, i, d[modal::at(i)]);
  }
  return b.matrix();
}

inline modal::SymmetricMatrix identity(std::int32_t order) {
  return diagonal(std::vector<double>(modal::at(order), 1.0));
}

// The five-point Laplacian on nx × ny inner points, fixed all around; `copies` of it unconnected, numbered in turn.
inline modal::SymmetricMatrix laplacian(std::int32_t nx, std::int32_t ny, std::int32_t copies = 1) {
  Builder b(nx * ny * copies);
  for (std::int32_t v = 0; v < nx * ny * copies; ++v) {
    const std::int32_t point = v / copies;
    b.add(v, v, 4.0);
    if (point >= ny) {
      b.add(v, v - ny * copies, -1.0);
    }
    if (point % ny > 0) {
      b.add(v, v - copies, -1.0);
    }
  }
  return b.matrix();
}

// 4 − 2·cos(iπ/(nx+1)) − 2·cos(jπ/(ny+1)), ascending, each `copies` times.
inline std::vector<double> laplacian_eigenvalues(std::int32_t nx, std::int32_t ny, std::size_t copies = 1) {
  std::vector<double> value;
  for (std::int32_t i = 1; i <= nx; ++i) {
    for (std::int32_t j = 1; j <= ny; ++j) {
      const double x = std::sin(0.5 * i * std::numbers::pi / (nx + 1));
      const double y = std::sin(0.5 * j * std::numbers::pi / (ny + 1));
      value.insert(value.end(), copies, 4.0 * (x * x + y * y));
    }
  }
  std::sort(value.begin(), value.end());
  return value;
}

// A mesh of nx × ny squares, every node joined with its eight neighbours and bearing two unknowns, as of displacements;
// positive definite by its diagonal.
inline modal::SymmetricMatrix plate_pattern(std::int32_t nx, std::int32_t ny) {
  Builder b(2 * nx * ny);
  for (std::int32_t u = 0; u < 2 * nx * ny; ++u) {
    for (std::int32_t w = 0; w < u; ++w) {
      const std::int32_t rows = u / 2 / ny - w / 2 / ny;
      const std::int32_t columns = u / 2 % ny - w / 2 % ny;
      if (rows <= 1 && std::abs(columns) <= 1) {
        b.add(u, w, rows == 0 && columns == 0 ? 0.5 : -1.0);
      }
    }
    b.add(u, u, 18.0);
  }
  return b.matrix();
}

// Random symmetric with about `per_row` entries a row and dominant diagonals, of which every third is negative when
// `indefinite`: by Gershgorin the eigenvalues have the signs of the diagonal.
inline modal::SymmetricMatrix random_dominant(std::int32_t order, double per_row, std::uint64_t seed,
                                              bool indefinite = false) {
  zortest::Random random(seed);
  Builder b(order);
  const auto dominate = [&](std::int32_t i, double value) { b.add(i, i, indefinite && i % 3 == 1 ? -value : value); };
  for (std::int32_t e = 0; e < static_cast<std::int32_t>(per_row * order / 2); ++e) {
    const std::int32_t i = random.integer(0, order - 1);
    const std::int32_t j = random.integer(0, order - 1);
    if (i != j) {
      const double value = random.uniform();
      b.add(i, j, value);
      dominate(i, std::abs(value));
      dominate(j, std::abs(value));
    }
  }
  for (std::int32_t i = 0; i < order; ++i) {
    dominate(i, 0.1);
  }
  return b.matrix();
}

// y := A·x, entry by entry.
inline std::vector<double> times(const modal::SymmetricMatrix& a, const double* x) {
  std::vector<double> y(modal::at(a.order), 0.0);
  for (std::size_t i = 0, p = 0; i < y.size(); ++i) {
    for (; p < modal::at(a.row_end[i + 1]); ++p) {
      const std::size_t j = modal::at(a.column[p] - 1);
      y[i] += a.value[p] * x[j];
      y[j] += i != j ? a.value[p] * x[i] : 0.0;
    }
  }
  return y;
}

inline modal::AssemblyTree plan(const modal::SymmetricMatrix& matrix) {
  const modal::CompressedGraph compressed = modal::compress(matrix);
  return modal::assembly_tree(compressed, modal::nested_dissection(compressed.graph));
}

}  // namespace modaltest
