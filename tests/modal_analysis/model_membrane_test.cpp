// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "structure/tapered_membrane.h"

// The selected eigenvalues of a dense symmetric-definite pencil.
extern "C" void dsygvx_(const int* itype, const char* jobz, const char* range, const char* uplo, const int* n,
                        double* a, const int* lda, double* b, const int* ldb, const double* vl, const double* vu,
                        const int* il, const int* iu, const double* abstol, int* m, double* w, double* z,
                        const int* ldz, double* work, const int* lwork, int* iwork, int* ifail, int* info);

namespace {

using modal::Structure;
using modal::SymmetricMatrix;

std::vector<double> dense_lower(const SymmetricMatrix& matrix) {
  const auto n = static_cast<std::size_t>(matrix.order);
  std::vector<double> dense(n * n);
  for (std::size_t i = 0; i < n; ++i) {
    for (auto p = static_cast<std::size_t>(matrix.row_end[i]); p < static_cast<std::size_t>(matrix.row_end[i + 1]);
         ++p) {
      dense[static_cast<std::size_t>(matrix.column[p] - 1) * n + i] = matrix.value[p];
    }
  }
  return dense;
}

std::vector<double> lowest_frequencies(const Structure& structure, int modes) {
  const int n = structure.stiffness.order;
  std::vector<double> k = dense_lower(structure.stiffness);
  std::vector<double> m = dense_lower(structure.mass);
  const int itype = 1, il = 1, one = 1, lwork = 40 * n;
  const double unused = 0, abstol = 0;
  int found = 0, info = -1;
  std::vector<double> w(static_cast<std::size_t>(n)), work(static_cast<std::size_t>(lwork));
  std::vector<int> iwork(static_cast<std::size_t>(5 * n)), ifail(static_cast<std::size_t>(n));
  double z = 0;
  dsygvx_(&itype, "N", "I", "L", &n, k.data(), &n, m.data(), &n, &unused, &unused, &il, &modes, &abstol, &found,
          w.data(), &z, &one, work.data(), &lwork, iwork.data(), ifail.data(), &info);
  EXPECT_EQ(info, 0);
  EXPECT_EQ(found, modes);
  w.resize(static_cast<std::size_t>(modes));
  for (double& x : w) {
    x = std::sqrt(x) / (2 * std::numbers::pi);
  }
  return w;
}

void expect_lower_rows(const SymmetricMatrix& matrix) {
  ASSERT_EQ(matrix.row_end.size(), static_cast<std::size_t>(matrix.order) + 1);
  ASSERT_EQ(matrix.row_end[0], 0);
  ASSERT_EQ(matrix.column.size(), matrix.value.size());
  ASSERT_EQ(matrix.column.size(), static_cast<std::size_t>(matrix.entries()));
  for (std::int32_t i = 1; i <= matrix.order; ++i) {
    const auto first = matrix.column.begin() + matrix.row_end[static_cast<std::size_t>(i) - 1];
    const auto end = matrix.column.begin() + matrix.row_end[static_cast<std::size_t>(i)];
    ASSERT_LT(first, end);
    ASSERT_GE(*first, 1);
    ASSERT_EQ(*(end - 1), i) << "the diagonal is last";
    ASSERT_EQ(std::adjacent_find(first, end, std::greater_equal<>()), end) << "row " << i << " does not ascend";
  }
}

TEST(Membrane, MatricesAreLowerRowsWithTheDiagonalLast) {
  for (const auto& [nx, ny] : {std::pair{1, 1}, {5, 1}, {1, 4}, {7, 3}}) {
    const Structure structure = modal::tapered_membrane(nx, ny);
    EXPECT_EQ(structure.stiffness.order, 2 * (nx * (3 * ny + 2)));
    EXPECT_EQ(structure.mass.order, structure.stiffness.order);
    expect_lower_rows(structure.stiffness);
    expect_lower_rows(structure.mass);
  }
}

TEST(Membrane, SidesAreStraightAndTheElementsFillTheTrapezoid) {
  const Structure structure = modal::tapered_membrane(6, 3);
  const auto& node = structure.mesh.node;
  double area = 0;
  for (const auto& element : structure.mesh.element) {
    for (std::size_t i = 0; i < 4; ++i) {
      const auto& a = node[static_cast<std::size_t>(element[i])];
      const auto& m = node[static_cast<std::size_t>(element[i + 4])];
      const auto& b = node[static_cast<std::size_t>(element[(i + 1) % 4])];
      EXPECT_NEAR(m[0], (a[0] + b[0]) / 2, 1e-14);
      EXPECT_NEAR(m[1], (a[1] + b[1]) / 2, 1e-14);
      area += (a[0] * b[1] - b[0] * a[1]) / 2;
    }
  }
  EXPECT_NEAR(area, 30.0, 1e-12);
}

// The reference figures are those of an independent finite-element program with the same mesh and element.
TEST(Membrane, FrequenciesAgreeWithAnIndependentProgram) {
  const Structure structure = modal::tapered_membrane(16, 8);
  ASSERT_EQ(structure.stiffness.order, 832);
  const std::vector<double> reference{44.62284, 130.03434, 162.69822, 246.05307, 379.89827, 391.43580};
  const std::vector<double> computed = lowest_frequencies(structure, 6);
  for (std::size_t i = 0; i < reference.size(); ++i) {
    EXPECT_NEAR(computed[i], reference[i], 1e-5) << "mode " << i + 1;
  }
}

}  // namespace
