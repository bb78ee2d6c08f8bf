// SPDX-License-Identifier: MIT
// A = L·D·Lᵀ kept front by front, and solves with many right-hand sides.
#pragma once

#include <cstdint>
#include <functional>

#include "factorization/assembly_tree.h"
#include "factorization/front_elimination.h"
#include "structure/symmetric_matrix.h"

namespace modal {

class MultifrontalFactor {
 public:
  // Told after each front: fronts done of all fronts.
  using Report = std::function<void(double done, double total)>;

  // The tree must outlive the factor.
  explicit MultifrontalFactor(const AssemblyTree& tree);

  // After a refusal the factor is of no use.
  Elimination factorize(const SymmetricMatrix& matrix, const PivotRule& rule, const Report& report);

  // X := A⁻¹·X; x: order × columns, column by column, the rows in the order of the matrix.
  void solve(std::int32_t columns, double* x) const;

 private:
  void forward(const Front& front, const double* factor, std::int32_t columns, double* x, double* work) const;
  void backward(const Front& front, const double* factor, std::int32_t columns, double* x, double* work) const;

  const AssemblyTree& tree_;
  // Per front an order × pivots rectangle by columns: D on the diagonal, L below it, Lᵀ above it in the pivots' square.
  Array<double> factor_;
  std::int64_t factor_size_ = 0;
};

}  // namespace modal
