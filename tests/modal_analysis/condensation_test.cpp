// SPDX-License-Identifier: MIT
// The condensed stiffness against the dense routine, which goes through eigenvalues.
#include <gtest/gtest.h>

#include "ZORTAVInversion.h"
#include "condensation/condensed_stiffness.h"
#include "modal_analysis/solver_matrices.h"
#include "structure/tapered_membrane.h"

namespace {

using modal::at;
using modal::SymmetricMatrix;
using Matrix = std::vector<std::vector<double>>;

Matrix dense(const SymmetricMatrix& a) {
  Matrix full(at(a.order), std::vector<double>(at(a.order)));
  for (std::size_t i = 0, p = 0; i < full.size(); ++i) {
    for (; p < at(a.row_end[i + 1]); ++p) {
      full[i][at(a.column[p] - 1)] = a.value[p];
      full[at(a.column[p] - 1)][i] = a.value[p];
    }
  }
  return full;
}

// K_rr − K_rc·K_cc⁻¹·K_cr by eaxrmc3, column by column.
std::vector<double> reference(const SymmetricMatrix& k, const std::vector<std::int32_t>& retained) {
  const Matrix full = dense(k);
  std::vector<std::size_t> rest;
  for (std::int32_t i = 0; i < k.order; ++i) {
    if (std::find(retained.begin(), retained.end(), i) == retained.end()) {
      rest.push_back(at(i));
    }
  }
  const auto n = static_cast<std::int32_t>(rest.size());
  const auto m = static_cast<std::int32_t>(retained.size());
  std::vector<double> a;
  for (std::size_t i = 0; i < rest.size(); ++i) {
    for (std::size_t j = 0; j <= i; ++j) {
      a.push_back(full[rest[i]][rest[j]]);
    }
  }
  std::vector<double> b;
  std::vector<double> s(at(m) * at(m));
  for (const std::int32_t r : retained) {
    for (const std::size_t c : rest) {
      b.push_back(full[at(r)][c]);
    }
  }
  std::vector<double> d(rest.size());
  std::vector<double> v(rest.size() * rest.size());
  std::vector<double> w(v.size());
  std::vector<double> inverse(v.size());
  std::vector<double> t(b.size());
  std::int32_t failed = 0;
  EXPECT_EQ(eaxrmc3(&n, &m, a.data(), b.data(), &n, d.data(), v.data(), w.data(), inverse.data(), t.data(), s.data(),
                    &failed),
            0);
  for (std::size_t j = 0; j < retained.size(); ++j) {
    for (std::size_t i = 0; i < retained.size(); ++i) {
      s[i + j * retained.size()] = full[at(retained[i])][at(retained[j])] - s[i + j * retained.size()];
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

TEST(Condensation, EqualsTheDenseRoutine) {
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
