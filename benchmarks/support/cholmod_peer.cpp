// SPDX-License-Identifier: MIT
#include "support/cholmod_peer.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "support/blas_library.h"

namespace zorbench {
namespace {

void* address(const char* name) {
  // The BLAS libraries first: the reference LAPACK is to meet the reference BLAS, not the one that CHOLMOD asks for.
  static void* const library = (blas_libraries(), dlopen("libcholmod.so.3", RTLD_NOW | RTLD_LOCAL));
  void* const found = library == nullptr ? nullptr : dlsym(library, name);
  if (found == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    std::exit(1);
  }
  return found;
}

struct Functions {
  decltype(cholmod_start)* start = reinterpret_cast<decltype(cholmod_start)*>(address("cholmod_start"));
  decltype(cholmod_finish)* finish = reinterpret_cast<decltype(cholmod_finish)*>(address("cholmod_finish"));
  decltype(cholmod_allocate_sparse)* allocate_sparse =
      reinterpret_cast<decltype(cholmod_allocate_sparse)*>(address("cholmod_allocate_sparse"));
  decltype(cholmod_free_sparse)* free_sparse =
      reinterpret_cast<decltype(cholmod_free_sparse)*>(address("cholmod_free_sparse"));
  decltype(cholmod_zeros)* zeros = reinterpret_cast<decltype(cholmod_zeros)*>(address("cholmod_zeros"));
  decltype(cholmod_free_dense)* free_dense =
      reinterpret_cast<decltype(cholmod_free_dense)*>(address("cholmod_free_dense"));
  decltype(cholmod_sdmult)* sdmult = reinterpret_cast<decltype(cholmod_sdmult)*>(address("cholmod_sdmult"));
  decltype(cholmod_transpose)* transpose = reinterpret_cast<decltype(cholmod_transpose)*>(address("cholmod_transpose"));
  decltype(cholmod_aat)* aat = reinterpret_cast<decltype(cholmod_aat)*>(address("cholmod_aat"));
  decltype(cholmod_sort)* sort = reinterpret_cast<decltype(cholmod_sort)*>(address("cholmod_sort"));
};

const Functions& cholmod() {
  static const Functions functions;
  return functions;
}

constexpr int symmetric_upper = 1;
constexpr int pattern_without_diagonal = -1;

cholmod_sparse* compressed(std::int32_t rows, std::int32_t columns, const std::int32_t* ptr, const std::int32_t* index,
                           int stype, int type, cholmod_common* common) {
  const auto entries = static_cast<std::size_t>(ptr[columns]);
  cholmod_sparse* const a = cholmod().allocate_sparse(static_cast<std::size_t>(rows), static_cast<std::size_t>(columns),
                                                      entries, 1, 1, stype, type, common);
  if (a == nullptr) {
    std::abort();
  }
  std::copy_n(ptr, columns + 1, static_cast<std::int32_t*>(a->p));
  std::copy_n(index, entries, static_cast<std::int32_t*>(a->i));
  return a;
}

}  // namespace

CholmodProduct::CholmodProduct(std::int32_t n, std::int32_t nvec, const std::int32_t* colptr, const std::int32_t* row,
                               const double* values, const double* x) {
  cholmod().start(&common_);
  a_ = compressed(n, n, colptr, row, symmetric_upper, CHOLMOD_REAL, &common_);
  std::copy_n(values, colptr[n], static_cast<double*>(a_->x));
  x_ = cholmod().zeros(static_cast<std::size_t>(n), static_cast<std::size_t>(nvec), CHOLMOD_REAL, &common_);
  y_ = cholmod().zeros(static_cast<std::size_t>(n), static_cast<std::size_t>(nvec), CHOLMOD_REAL, &common_);
  std::copy_n(x, static_cast<std::int64_t>(n) * nvec, static_cast<double*>(x_->x));
}

CholmodProduct::~CholmodProduct() {
  cholmod().free_sparse(&a_, &common_);
  cholmod().free_dense(&x_, &common_);
  cholmod().free_dense(&y_, &common_);
  cholmod().finish(&common_);
}

void CholmodProduct::multiply() {
  double one[2] = {1.0, 0.0};
  double zero[2] = {0.0, 0.0};
  cholmod().sdmult(a_, 0, one, zero, x_, y_, &common_);
}

// The columns of CHOLMOD's matrix are the rows of A: it holds Aᵀ.
CholmodPattern::CholmodPattern(std::int32_t nrow, std::int32_t ncol, const std::int32_t* ptr,
                               const std::int32_t* index) {
  cholmod().start(&common_);
  a_ = compressed(ncol, nrow, ptr, index, 0, CHOLMOD_PATTERN, &common_);
}

CholmodPattern::~CholmodPattern() {
  cholmod().free_sparse(&a_, &common_);
  cholmod().finish(&common_);
}

void CholmodPattern::transpose() {
  cholmod_sparse* t = cholmod().transpose(a_, 0, &common_);
  cholmod().free_sparse(&t, &common_);
}

void CholmodPattern::square(bool sorted) {
  cholmod_sparse* p = cholmod().aat(a_, nullptr, 0, pattern_without_diagonal, &common_);
  if (sorted) {
    cholmod().sort(p, &common_);
  }
  cholmod().free_sparse(&p, &common_);
}

std::int64_t CholmodPattern::square_entries() {
  cholmod_sparse* p = cholmod().aat(a_, nullptr, 0, pattern_without_diagonal, &common_);
  const std::int64_t entries = static_cast<std::int32_t*>(p->p)[p->ncol];
  cholmod().free_sparse(&p, &common_);
  return entries;
}

}  // namespace zorbench
