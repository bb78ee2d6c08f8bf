// SPDX-License-Identifier: MIT
#include <algorithm>

#include "ZORTAVSparseKernels.h"
#include "ZORTAVSparsePatterns.h"
#include "long/differential/trial.h"
#include "matrix_kernels/pattern_oracle.h"
#include "matrix_kernels/sparse_matrices.h"

namespace zortest {
namespace {

constexpr std::int32_t unread = -123;  // for arguments that are reserved

void diagonal_product(Trial& t) {
  const auto n = static_cast<std::size_t>(std::max(0, t.n));
  const int32_t order = static_cast<int32_t>(n);
  const int32_t nvec = t.random.integer(-1, 9);
  const int32_t mode = t.random.integer(-1, 7);
  const auto vectors = static_cast<std::size_t>(std::max(1, nvec));  // the first one is computed whatever nvec is
  Reals& values = t.reals(n);
  Reals& x = t.reals(n * vectors);
  Reals& y = t.reals(n * vectors);
  eaxmvm(&mode, &order, &unread, &order, &nvec, nullptr, nullptr, values.data(), x.data(), y.data());
  for (std::size_t i = 0; i < y.own.size(); ++i) {
    y[i] = values[i % n] * x[i];
  }
}

void sparse_product(Trial& t) {
  if (t.random.integer(0, 9) == 0) {
    diagonal_product(t);
    return;
  }
  const int n = std::max(1, t.n);
  const int one_above = t.one_of<int>({0, 0, 5});
  const bool nodes = t.random.integer(0, 2) == 0;
  const int unknowns = t.random.integer(1, 6);
  LowerRows a = nodes ? node_rows((n + unknowns - 1) / unknowns, unknowns, t.random.integer(1, 5), n,
                                  t.one_of<int>({0, 0, 3}), t.random)
                      : scattered_rows(n, t.random.integer(0, n), t.random.integer(0, 14), one_above, t.random);
  const int32_t mode = t.one_of<int>({1, 1, 1, 2, 2, 3, 0});
  const int32_t nvec = t.random.integer(0, 13);
  Reals& values = t.reals(a.values.size());
  Integer& colidx = t.integers(a.colidx);
  Integer& rowptr = t.integers(a.rowptr);
  const std::size_t length = static_cast<std::size_t>(a.n) * static_cast<std::size_t>(nvec);
  Reals& x = t.reals(length);
  Reals& y = t.reals(length);
  const int32_t nnz = a.nnz();
  eaxmvm(&mode, &nnz, &a.nrows, &a.n, &nvec, colidx.data(), rowptr.data(), values.data(), x.data(), y.data());
  a.values = values.own;
  if (mode == 1 || mode == 2) {
    y.own = product_in_order(mode, a, nvec, x.own, y.own);
  }
}

// Bytes in an array of integers, so that the guard words stand around them.
struct Bytes {
  Integer& integers;
  explicit Bytes(Trial& t, std::size_t words) : integers(t.integers(std::vector<std::int32_t>(words, 0x23232323))) {}
  void* data() { return integers.data(); }
  void fill(std::size_t count, char value) { std::fill_n(reinterpret_cast<char*>(integers.own.data()), count, value); }
};

void clear_by_type(Trial& t) {
  const int32_t type = t.random.integer(-9, 7);
  const int32_t count = type == 3 || type == 4 || type == 5 ? std::max(0, t.n) : t.n;
  const auto elements = static_cast<std::size_t>(std::max(0, t.n));
  const auto size = static_cast<std::size_t>(type < 0 ? -type : type == 2 ? 2 : type == 5 ? 8 : 4);
  Bytes bytes(t, elements * size / 4 + 5);
  // Doubles lie on their own boundary.
  auto* const at = static_cast<std::int32_t*>(bytes.data());
  const std::size_t shift = type == 5 && reinterpret_cast<std::uintptr_t>(at) % 8 != 0 ? 1 : 0;
  eaxraz(&type, at + shift, &count);
  if (type != 0 && type != 1 && type < 6) {
    const std::int32_t first = bytes.integers[0];
    bytes.fill(elements * size + 4 * shift, type < 0 ? ' ' : '\0');
    bytes.integers[0] = shift == 1 ? first : bytes.integers[0];
  }
}

void fill_bytes(Trial& t) {
  const auto count = static_cast<std::size_t>(std::max(0, t.n));
  const char character = static_cast<char>(t.random.integer(-128, 127));
  Bytes bytes(t, count / 4 + 5);
  eaxmac(bytes.data(), &t.n, &character);
  bytes.fill(count, character);
}

Pattern pattern(Trial& t) {
  const int ncol = std::max(1, t.n);
  const int longest = t.random.integer(0, 3) == 0 ? std::min(ncol, 30) : t.random.integer(0, 4);
  return random_pattern(t.other_size(), ncol, longest, t.random);
}

// An output; what it held before does not matter.
Integer& output(Trial& t, const Integers& expected) {
  Integer& array = t.integers(Integers(expected.size(), 77));
  array.own = expected;
  return array;
}

// Moves the columns after `last` on by `gap`, all of the new ones empty.
void move_apart(Pattern& a, PatternProduct& product, std::int32_t last, std::int32_t gap) {
  for (Integers* const columns : {&a.idx, &product.idx_p, &product.list}) {
    for (std::int32_t& c : *columns) {
      c += c > last ? gap : 0;
    }
  }
  for (Integers* const ends : {&product.ptr_t, &product.ptr_p}) {
    const std::int32_t end = (*ends)[static_cast<std::size_t>(last)];
    ends->insert(ends->begin() + last, static_cast<std::size_t>(gap), end);
  }
  a.ncol += gap;
  product.list.resize(static_cast<std::size_t>(a.ncol) + 1);
}

// A pattern as the library gets it, and what comes of it.
struct PatternCase {
  Pattern a;
  PatternProduct expected;
  Integer* ptr;
  Integer* idx;
  explicit PatternCase(Trial& t) : a(pattern(t)), expected(dense_product(a)) {
    if (a.ncol > 1 && t.random.integer(0, 4) == 0) {  // about as far as 16 bits reach
      move_apart(a, expected, t.random.integer(1, a.ncol - 1), t.random.integer(32690, 32770));
    }
    ptr = &t.integers(a.ptr);
    idx = &t.integers(a.idx);
  }
};

void transpose(Trial& t) {
  PatternCase c(t);
  Integer& ptr_t = output(t, c.expected.ptr_t);
  Integer& idx_t = output(t, c.expected.idx_t);
  eaunle(&c.a.ncol, &c.a.nrow, &unread, c.ptr->data(), c.idx->data(), ptr_t.data(), idx_t.data());
}

void count_product(Trial& t) {
  PatternCase c(t);
  Integer& ptr_t = output(t, c.expected.ptr_t);
  Integer& idx_t = output(t, c.expected.idx_t);
  Integer& ptr_p = output(t, c.expected.ptr_p);
  Integer& total = output(t, {c.expected.ptr_p.back()});
  Guarded<std::int32_t> mark(static_cast<std::size_t>(c.a.ncol));  // work: only its ends are the caller's
  eaupnn(&c.a.ncol, &c.a.nrow, &unread, c.ptr->data(), c.idx->data(), ptr_t.data(), idx_t.data(), mark.data(),
         ptr_p.data(), total.data());
  t.expect_that(mark.intact(), "mark is written beyond its ends");
}

void fill_product(Trial& t) {
  PatternCase c(t);
  Integer& ptr_t = t.integers(c.expected.ptr_t);
  Integer& idx_t = t.integers(c.expected.idx_t);
  Integer& list = output(t, c.expected.list);
  Integer& idx_p = output(t, c.expected.idx_p);
  eaunln(&c.a.ncol, &unread, &unread, c.ptr->data(), c.idx->data(), ptr_t.data(), idx_t.data(), list.data(),
         idx_p.data());
}

void row_pointers(Trial& t) {
  const int32_t p = std::max(0, t.n);
  const int32_t second = t.other_size();
  const int32_t nrows = p + second;
  const int32_t m = p == 0 ? 0 : t.random.integer(0, 2 * p);
  const int32_t q = m + (second == 0 ? 0 : t.random.integer(0, 2 * second));
  Integers row_of(static_cast<std::size_t>(q));
  for (int32_t e = 0; e < q; ++e) {
    row_of[static_cast<std::size_t>(e)] = t.random.integer(1, e < m ? p : second);
  }
  if (t.random.integer(0, 1) == 0) {
    std::sort(row_of.begin(), row_of.begin() + m);
    std::sort(row_of.begin() + m, row_of.end());
  }
  Integer& rows = t.integers(row_of);
  Integer& ptr = output(t, Integers(static_cast<std::size_t>(nrows) + 1));
  eaupne(&q, &m, &p, &nrows, rows.data(), ptr.data());
  for (int32_t e = 1; e <= q; ++e) {
    ptr[static_cast<std::size_t>(row_of[static_cast<std::size_t>(e - 1)] + (e <= m ? 0 : p))] = e;
  }
  for (std::size_t l = 1; l < ptr.own.size(); ++l) {
    ptr[l] = ptr[l] == 0 ? ptr[l - 1] : ptr[l];
  }
}

}  // namespace

std::vector<Routine> sparse_routines() {
  const std::vector<int> orders = {71, 72, 73, 127, 128, 129, 255, 257, 500};
  return {{"eaxmvm", sparse_product, orders},
          {"eaxraz", clear_by_type, orders},
          {"eaxmac", fill_bytes, orders},
          {"eaunle", transpose, orders},
          {"eaupnn", count_product, {127, 128, 129}},
          {"eaunln", fill_product, {127, 128, 129}},
          {"eaupne", row_pointers, orders}};
}

}  // namespace zortest
