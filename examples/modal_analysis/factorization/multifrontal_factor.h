// SPDX-License-Identifier: MIT
// A = L·D·Lᵀ held front by front, and solves with many right-hand sides.
//
// Where the plan keeps unknowns r (plan_keeping), which must be the last of the matrix, only the others, c, are
// eliminated, and the two halves of a solve are worth something on their own: they apply the static modes
// −A_cc⁻¹·A_cr, which stand in the factor's rows below, and their transpose.
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

  // Unknowns that the factor eliminates: all that are not kept.
  std::int32_t eliminated() const { return eliminated_; }

  // X := A_cc⁻¹·X; x: eliminated × columns, column by column, the rows in the order of the matrix.
  void solve(std::int32_t columns, double* x) const;

  // X_c := −A_cc⁻¹·A_cr·X_r; x: order × columns.
  void extend(std::int32_t columns, double* x) const;
  // X_r := X_r − A_rc·A_cc⁻¹·X_c; x: order × columns.
  void condense(std::int32_t columns, double* x) const;

  // −A_rc·A_cc⁻¹·A_cr as the elimination leaves it: the packed lower triangle by columns, in the order of the tree.
  const Array<double>& kept_update() const { return kept_update_; }

 private:
  // Between the rows of x and the positions first .. end-1 of the elimination order.
  void load(std::int32_t first, std::int32_t end, std::int32_t columns, const double* x, std::int32_t ldx,
            double* permuted) const;
  void store(std::int32_t first, std::int32_t end, std::int32_t columns, const double* permuted, double* x,
             std::int32_t ldx) const;
  // Positions first .. end-1 := 0.
  void clear(std::int32_t first, std::int32_t end, std::int32_t columns, double* permuted) const;
  void all_forward(std::int32_t columns, double* permuted) const;
  void all_backward(std::int32_t columns, double* permuted) const;
  void forward(const Front& front, const double* factor, std::int32_t columns, double* x, double* work) const;
  void backward(const Front& front, const double* factor, std::int32_t columns, double* x, double* work) const;

  const AssemblyTree& tree_;
  // Per front an order × pivots rectangle by columns: D on the diagonal, L below it, Lᵀ above it in the pivots' square.
  Array<double> factor_;
  std::int64_t factor_size_ = 0;
  std::int32_t eliminated_ = 0;
  Array<std::int32_t> from_;  // unknowns from 1, in elimination order
  Array<double> kept_update_;
};

}  // namespace modal
