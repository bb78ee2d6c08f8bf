// SPDX-License-Identifier: MIT
// The condensed stiffness against an elimination of the dense matrix.
#include <gtest/gtest.h>

#include "condensation/condensed_stiffness.h"
#include "modal_analysis/solver_matrices.h"
#include "structure/tapered_membrane.h"

namespace {

using modal::at;
using modal::SymmetricMatrix;

// K_rr − K_rc·K_cc⁻¹·K_cr by columns: one unknown after the other is eliminated.
std::vector<double> reference(const SymmetricMatrix& k, const std::vector<std::int32_t>& retained) {
  const std::size_t n = at(k.order);
  std::vector<std::vector<double>> a(n, std::vector<double>(n));
  for (std::size_t i = 0, p = 0; i < n; ++i) {
    for (; p < at(k.row_end[i + 1]); ++p) {
      a[i][at(k.column[p] - 1)] = a[at(k.column[p] - 1)][i] = k.value[p];
    }
  }
  std::vector<bool> left(n, true);
  for (std::size_t c = 0; c < n; ++c) {
    left[c] = std::find(retained.begin(), retained.end(), static_cast<std::int32_t>(c)) != retained.end();
    for (std::size_t i = 0; i < n && !left[c]; ++i) {
      const double factor = i != c && left[i] ? a[i][c] / a[c][c] : 0.0;
      for (std::size_t j = 0; j < n && factor != 0.0; ++j) {
        a[i][j] -= factor * a[c][j];
      }
    }
  }
  std::vector<double> s;
  for (const std::int32_t j : retained) {
    for (const std::int32_t i : retained) {
      s.push_back(a[at(i)][at(j)]);
    }
  }
  return s;
}

void expect_condensed(const SymmetricMatrix& k, const std::vector<std::int32_t>& retained, double tolerance) {
  SCOPED_TRACE(testing::Message() << "order " << k.order << ", retained " << retained.size());
  const std::vector<double> expected = reference(k, retained);
  const modal::CondensedStiffness s = modal::condense(k, retained);
  ASSERT_EQ(at(s.order), retained.size());
  const double scale = std::abs(*std::max_element(expected.begin(), expected.end(),
                                                  [](double x, double y) { return std::abs(x) < std::abs(y); }));
  for (std::int32_t j = 0; j < s.order; ++j) {
    for (std::int32_t i = 0; i < s.order; ++i) {
      EXPECT_NEAR(s(i, j), expected[at(i) + at(j) * retained.size()], tolerance * scale) << i << ", " << j;
    }
  }
}

TEST(Condensation, EqualsTheDenseElimination) {
  const SymmetricMatrix membrane = modal::tapered_membrane(6, 4).stiffness;
  const std::int32_t last = membrane.order - 1;
  // The tip, in no order; one direction only of a node, whose twin is condensed out; nodes far apart.
  expect_condensed(membrane, {last, last - 8, last - 3, last - 1}, 1e-10);
  expect_condensed(membrane, {21, last, 5, 100}, 1e-10);
  expect_condensed(membrane, {0}, 1e-10);

  zortest::Random random(17);
  for (const std::int32_t count : {1, 7, 60}) {
    const SymmetricMatrix k = modaltest::random_dominant(150, 4.0, static_cast<std::uint64_t>(count));
    std::vector<std::int32_t> all(at(k.order));
    std::iota(all.begin(), all.end(), 0);
    for (std::size_t i = 0; i < at(count); ++i) {
      std::swap(all[i], all[at(random.integer(static_cast<std::int32_t>(i), k.order - 1))]);
    }
    expect_condensed(k, {all.begin(), all.begin() + count}, 1e-12);
  }
  // Parts that are not connected with each other, of which some have nothing retained.
  expect_condensed(modaltest::laplacian(5, 5, 3), {0, 31, 3}, 1e-12);
}

TEST(Condensation, OfEverythingIsTheMatrixAndOfAChainItsSpringsInSeries) {
  const SymmetricMatrix k = modaltest::laplacian(3, 2);
  const modal::CondensedStiffness all = modal::condense(k, std::vector<std::int32_t>{5, 4, 3, 2, 1, 0});
  EXPECT_EQ(all(0, 0), 4.0);
  EXPECT_EQ(all(5, 4), -1.0);
  EXPECT_EQ(all(5, 0), 0.0);

  // A free chain: singular as a whole, not with its ends held.
  modaltest::Builder chain(5);
  for (std::int32_t i = 0; i < 4; ++i) {
    chain.join(i, i + 1, 4.0);
  }
  const modal::CondensedStiffness ends = modal::condense(chain.matrix(), std::vector<std::int32_t>{0, 4});
  EXPECT_NEAR(ends(0, 0), 1.0, 1e-15);
  EXPECT_NEAR(ends(1, 0), -1.0, 1e-15);
  chain.add(2, 2, -8.0);
  EXPECT_THROW(modal::condense(chain.matrix(), std::vector<std::int32_t>{0, 4}), modal::PivotRefused);
}

}  // namespace
