// SPDX-License-Identifier: MIT
#include "factorization/multifrontal_factor.h"

#include <algorithm>

#include "ZORTAVMatrixProduct.h"
#include "ZORTAVVectorKernels.h"
#include "factorization/index.h"

namespace modal {
namespace {

constexpr std::int32_t unit = 1;
constexpr double minus_one = -1.0;

// Pivots that the triangular solves take at a time; what they do to the rows below is one matrix product.
constexpr std::int32_t panel = 32;

// eagemm divides its product among threads by blocks of this many rows. A product of one block runs where it is called,
// and the thousands of small products of a solve are better off so: waking a team would take longer than their
// arithmetic.
constexpr std::int32_t row_block = 80;
constexpr std::int64_t worth_a_team = 8'000'000;  // multiplications

// C := beta·C + alpha·op(A)·B with op(A) m × k. Where it is cut depends on the sizes only.
void product(const char* transa, std::int32_t m, std::int32_t n, std::int32_t k, double alpha, const double* a,
             std::int32_t lda, const double* b, std::int32_t ldb, double beta, double* c, std::int32_t ldc) {
  const std::int32_t piece = std::int64_t{m} * n * k < worth_a_team ? row_block : m;
  const std::int64_t next_row = *transa == 'N' ? 1 : lda;
  for (std::int32_t i = 0; i < m; i += piece) {
    const std::int32_t rows = std::min(piece, m - i);
    eagemm(transa, "N", &rows, &n, &k, &alpha, a + i * next_row, &lda, b, &ldb, &beta, c + i, &ldc);
  }
}

std::int64_t rectangle(const Front& front) {
  return std::int64_t{front.order} * front.pivots;
}

}  // namespace

MultifrontalFactor::MultifrontalFactor(const AssemblyTree& tree) : tree_(tree), from_(tree.unknown) {
  for (const Front& front : tree.front) {
    factor_size_ += rectangle(front);
    eliminated_ += front.pivots;
  }
  std::transform(from_.begin(), from_.end(), from_.begin(), [](std::int32_t i) { return i + 1; });
}

Elimination MultifrontalFactor::factorize(const SymmetricMatrix& matrix, const PivotRule& rule, const Report& report) {
  factor_ = Array<double>(at(factor_size_));
  double* next = factor_.data();
  double done = 0.0;
  return eliminate(tree_, matrix, rule, [&](const Front& front, const double* packed) {
    const std::int32_t n = front.order;
    for (std::int32_t j = 0; j < front.pivots; ++j) {
      double* column = next + std::int64_t{j} * n;
      std::copy(packed, packed + (n - j), column + j);
      packed += n - j;
      for (std::int32_t i = j + 1; i < front.pivots; ++i) {
        next[std::int64_t{i} * n + j] = column[i];
      }
    }
    if (front.pivots == 0) {
      kept_update_.assign(packed, packed + front.update_entries());
    }
    next += rectangle(front);
    report(++done, static_cast<double>(tree_.front.size()));
  });
}

void MultifrontalFactor::load(std::int32_t first, std::int32_t end, std::int32_t columns, const double* x,
                              std::int32_t ldx, double* permuted) const {
  const std::int32_t count = end - first;
  for (std::int64_t c = 0; c < columns; ++c) {
    e_dgthr(&count, x + c * ldx, permuted + c * tree_.order() + first, from_.data() + first);
  }
}

void MultifrontalFactor::store(std::int32_t first, std::int32_t end, std::int32_t columns, const double* permuted,
                               double* x, std::int32_t ldx) const {
  const std::int32_t count = end - first;
  for (std::int64_t c = 0; c < columns; ++c) {
    e_dsctr(&count, permuted + c * tree_.order() + first, from_.data() + first, x + c * ldx);
  }
}

void MultifrontalFactor::clear(std::int32_t first, std::int32_t end, std::int32_t columns, double* permuted) const {
  for (std::int64_t c = 0; c < columns; ++c) {
    std::fill(permuted + c * tree_.order() + first, permuted + c * tree_.order() + end, 0.0);
  }
}

void MultifrontalFactor::all_forward(std::int32_t columns, double* permuted) const {
  Array<double> work(at(tree_.largest_front) * at(columns));
  const double* factor = factor_.data();
  for (const Front& front : tree_.front) {
    if (front.pivots > 0) {
      forward(front, factor, columns, permuted, work.data());
      factor += rectangle(front);
    }
  }
}

void MultifrontalFactor::all_backward(std::int32_t columns, double* permuted) const {
  Array<double> work(at(tree_.largest_front) * at(columns));
  const double* factor = factor_.data() + factor_size_;
  for (auto front = tree_.front.rbegin(); front != tree_.front.rend(); ++front) {
    if (front->pivots > 0) {
      factor -= rectangle(*front);
      backward(*front, factor, columns, permuted, work.data());
    }
  }
}

void MultifrontalFactor::solve(std::int32_t columns, double* x) const {
  const std::int32_t n = tree_.order();
  Array<double> permuted(at(n) * at(columns));
  load(0, eliminated_, columns, x, eliminated_, permuted.data());
  clear(eliminated_, n, columns, permuted.data());
  all_forward(columns, permuted.data());
  clear(eliminated_, n, columns, permuted.data());
  all_backward(columns, permuted.data());
  store(0, eliminated_, columns, permuted.data(), x, eliminated_);
}

void MultifrontalFactor::extend(std::int32_t columns, double* x) const {
  const std::int32_t n = tree_.order();
  Array<double> permuted(at(n) * at(columns));
  load(eliminated_, n, columns, x, n, permuted.data());
  clear(0, eliminated_, columns, permuted.data());
  all_backward(columns, permuted.data());
  store(0, eliminated_, columns, permuted.data(), x, n);
}

void MultifrontalFactor::condense(std::int32_t columns, double* x) const {
  const std::int32_t n = tree_.order();
  Array<double> permuted(at(n) * at(columns));
  load(0, n, columns, x, n, permuted.data());
  all_forward(columns, permuted.data());
  store(eliminated_, n, columns, permuted.data(), x, n);
}

// X1 := L11⁻¹·X1, X2 := X2 − L21·X1, then X1 := D⁻¹·X1. Untransposed products go to a work array and are subtracted
// from there: that way the zeros have the same signs on every route of eagemm, that is, with any number of threads.
void MultifrontalFactor::forward(const Front& front, const double* factor, std::int32_t columns, double* x,
                                 double* work) const {
  const std::int32_t n = tree_.order();
  const std::int32_t lda = front.order;
  double* pivots = x + front.first_pivot;
  for (std::int32_t begin = 0; begin < front.pivots; begin += panel) {
    const std::int32_t width = std::min(panel, front.pivots - begin);
    for (std::int32_t j = 0; j < width; ++j) {
      const double* below = factor + std::int64_t{begin + j} * lda + (begin + j + 1);
      const std::int32_t length = width - j - 1;
      for (std::int32_t c = 0; c < columns; ++c) {
        double* xc = pivots + std::int64_t{c} * n + begin + j;
        const double multiple = -*xc;
        e_daxpy(&length, &multiple, below, &unit, xc + 1, &unit);
      }
    }
    const std::int32_t end = begin + width;
    const std::int32_t rest = front.pivots - end;
    if (rest > 0) {
      product("N", rest, columns, width, 1.0, factor + std::int64_t{begin} * lda + end, lda, pivots + begin, n, 0.0,
              work, rest);
      for (std::int32_t c = 0; c < columns; ++c) {
        e_daxpy(&rest, &minus_one, work + std::int64_t{c} * rest, &unit, pivots + std::int64_t{c} * n + end, &unit);
      }
    }
  }

  const std::int32_t rows = front.rows_below();
  if (rows > 0) {
    product("N", rows, columns, front.pivots, 1.0, factor + front.pivots, lda, pivots, n, 0.0, work, rows);
    const std::int32_t* row = tree_.rows_below(front).data();
    for (std::int32_t c = 0; c < columns; ++c) {
      e_daxpyi(&rows, &minus_one, work + std::int64_t{c} * rows, row, x + std::int64_t{c} * n);
    }
  }
  for (std::int32_t j = 0; j < front.pivots; ++j) {
    drscl(&columns, factor + std::int64_t{j} * (lda + 1), pivots + j, &n);
  }
}

// X1 := L11⁻ᵀ·(X1 − L21ᵀ·X2).
void MultifrontalFactor::backward(const Front& front, const double* factor, std::int32_t columns, double* x,
                                  double* work) const {
  const std::int32_t n = tree_.order();
  const std::int32_t lda = front.order;
  double* pivots = x + front.first_pivot;
  const std::int32_t rows = front.rows_below();
  if (rows > 0) {
    const std::int32_t* row = tree_.rows_below(front).data();
    for (std::int32_t c = 0; c < columns; ++c) {
      e_dgthr(&rows, x + std::int64_t{c} * n, work + std::int64_t{c} * rows, row);
    }
    product("T", front.pivots, columns, rows, -1.0, factor + front.pivots, lda, work, rows, 1.0, pivots, n);
  }

  for (std::int32_t begin = (front.pivots - 1) / panel * panel; begin >= 0; begin -= panel) {
    const std::int32_t width = std::min(panel, front.pivots - begin);
    const std::int32_t end = begin + width;
    const std::int32_t rest = front.pivots - end;
    if (rest > 0) {
      product("T", width, columns, rest, -1.0, factor + std::int64_t{begin} * lda + end, lda, pivots + end, n, 1.0,
              pivots + begin, n);
    }
    for (std::int32_t j = width - 1; j > 0; --j) {
      const double* above = factor + std::int64_t{begin + j} * lda + begin;
      for (std::int32_t c = 0; c < columns; ++c) {
        double* xc = pivots + std::int64_t{c} * n + begin;
        const double multiple = -xc[j];
        e_daxpy(&j, &multiple, above, &unit, xc, &unit);
      }
    }
  }
}

}  // namespace modal
