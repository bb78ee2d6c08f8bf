// SPDX-License-Identifier: MIT
// SuiteSparse as a peer, loaded at run time: linked, it would bring whichever BLAS stands behind the common names.
#pragma once

#include <cholmod.h>

#include <cstdint>

namespace zorbench {

// Y := A·X, the upper triangle of A by columns.
class CholmodProduct {
 public:
  CholmodProduct(std::int32_t n, std::int32_t nvec, const std::int32_t* colptr, const std::int32_t* row,
                 const double* values, const double* x);
  CholmodProduct(const CholmodProduct&) = delete;
  CholmodProduct& operator=(const CholmodProduct&) = delete;
  ~CholmodProduct();
  void multiply();

 private:
  cholmod_common common_;
  cholmod_sparse* a_;
  cholmod_dense* x_;
  cholmod_dense* y_;
};

// The pattern of Aᵀ, and of Aᵀ·A, for A with its rows compressed, indices from 0.
class CholmodPattern {
 public:
  CholmodPattern(std::int32_t nrow, std::int32_t ncol, const std::int32_t* ptr, const std::int32_t* index);
  CholmodPattern(const CholmodPattern&) = delete;
  CholmodPattern& operator=(const CholmodPattern&) = delete;
  ~CholmodPattern();
  void transpose();
  void square(bool sorted);  // without the diagonal
  std::int64_t square_entries();

 private:
  cholmod_common common_;
  cholmod_sparse* a_;
};

}  // namespace zorbench
