// SPDX-License-Identifier: MIT
// The elimination step by step, for matrices that fit the first-level cache: there a panel costs more than it saves.
#pragma once

#include <cmath>
#include <cstdint>
#include <utility>

#include "ZORTAVVectorKernels.h"

namespace zortav {

class PlainInversion {
 public:
  PlainInversion(std::int32_t lda, std::int32_t n, double* a) : a_(a), lda_(lda), n_(n) {}

  void invert_general(std::int32_t* ipiv) {
    for (std::int32_t j = 0; j < n_; ++j) {
      ipiv[j] = j + 1;
    }
    for (std::int32_t k = 0; k < n_; ++k) {
      const std::int32_t p = pivot_column(k);
      if (p != k) {
        std::swap(ipiv[k], ipiv[p]);
        e_dswap(&n_, column(k), &contiguous, column(p), &contiguous);
      }
      general_step(k);
    }
    restore_rows(ipiv);
  }

  // False when the tested pivot of some step was too small; what the steps before it did stands.
  bool invert_symmetric(bool tested) {
    for (std::int32_t k = 0; k < n_; ++k) {
      if (tested && std::abs(at(k, k)) <= smallest_pivot) {
        return false;
      }
      symmetric_step(k);
    }
    for (std::int32_t j = 0; j < n_; ++j) {
      for (std::int32_t i = 0; i < j; ++i) {
        at(j, i) = at(i, j);
      }
    }
    return true;
  }

 private:
  // A tested pivot must be larger in magnitude, whatever the scale of the matrix.
  static constexpr double smallest_pivot = 1e-8;
  static constexpr std::int32_t contiguous = 1;

  double* column(std::int32_t j) const { return a_ + j * lda_; }
  double& at(std::int32_t i, std::int32_t j) const { return column(j)[i]; }

  // The last of the largest elements of row k from column k on, if the one on the diagonal is smaller; else k.
  std::int32_t pivot_column(std::int32_t k) const {
    double largest = 0;
    std::int32_t p = k;
    for (std::int32_t j = k; j < n_; ++j) {
      const double magnitude = std::abs(at(k, j));
      if (magnitude >= largest) {
        largest = magnitude;
        p = j;
      }
    }
    return largest > std::abs(at(k, k)) ? p : k;
  }

  void general_step(std::int32_t k) const {
    const double r = 1 / at(k, k);
    const double minus_r = -r;
    at(k, k) = 0;
    e_dscal(&n_, &minus_r, column(k), &contiguous);
    for (std::int32_t j = 0; j < n_; ++j) {
      if (j != k) {
        const double t = at(k, j);
        at(k, j) = t * r;
        e_daxpy(&n_, &t, column(k), &contiguous, column(j), &contiguous);
      }
    }
    at(k, k) = r;
  }

  // Columns were exchanged, so rows of the inverse are.
  void restore_rows(std::int32_t* ipiv) const {
    for (std::int32_t i = 0; i < n_; ++i) {
      std::int32_t j = i;
      while (ipiv[j] != i + 1) {
        ++j;
      }
      if (j != i) {
        ipiv[j] = ipiv[i];
        ipiv[i] = i + 1;
        for (std::int32_t c = 0; c < n_; ++c) {
          std::swap(at(i, c), at(j, c));
        }
      }
    }
  }

  // Only the upper triangle takes the update. Row and column k are written out in full, since the update of the other
  // columns reads them there; the elements left of the diagonal have changed sign.
  void symmetric_step(std::int32_t k) const {
    const double r = -1 / at(k, k);
    at(k, k) = 0;
    for (std::int32_t i = 0; i < k; ++i) {
      at(k, i) = -at(i, k);
    }
    for (std::int32_t j = k + 1; j < n_; ++j) {
      at(j, k) = at(k, j);
    }
    for (std::int32_t j = n_ - 1; j >= 0; --j) {
      if (j != k) {
        const double t = at(k, j) * r;
        const std::int32_t rows = j + 1;
        at(k, j) = t;
        e_daxpy(&rows, &t, column(k), &contiguous, column(j), &contiguous);
        at(j, k) = t;
      }
    }
    at(k, k) = -r;
  }

  double* a_;
  std::int64_t lda_;
  std::int32_t n_;
};

}  // namespace zortav
