// SPDX-License-Identifier: MIT
// Work for a team: a product of several passes and row blocks, and a sparse one of several groups of vectors.
#pragma once

#include <vector>

#include "matrix_kernels/product_oracle.h"
#include "matrix_kernels/sparse_matrices.h"
#include "support/numbers.h"
#include "team.h"

namespace zortest {

class TeamWork {
 public:
  // The results of both products, one after the other.
  std::vector<double> run() const {
    std::vector<double> results = operands_.product();
    const std::size_t products = results.size();
    results.resize(products + vectors_.size(), nan);
    call_eaxmvm(1, rows_, vector_count, vectors_.data(), results.data() + products);
    return results;
  }
  // What every team must come to.
  std::vector<double> alone() const {
    const int team = omp_get_max_threads();
    set_team(1);
    std::vector<double> results = run();
    set_team(team);
    return results;
  }

 private:
  static constexpr int order = 150;
  static constexpr int vector_count = 4 * 8 + 3;

  Random random_{20268};
  Operands operands_{{'T', 'T', 330, 99, 251, -1.25, 0.5}, random_};
  LowerRows rows_ = scattered_rows(order, order, 9, 0, random_);
  std::vector<double> vectors_ = random_.vector(std::size_t{order} * vector_count);
};

inline bool same_bits(const std::vector<double>& a, const std::vector<double>& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

}  // namespace zortest
