// SPDX-License-Identifier: MIT
// Stands before the reference BLAS in the published test programs: the routines that this library has under other names
// go to it, wherever both mean the same; bad arguments, which the library answers in its own way or not at all, and all
// other routines go to the reference. Counts the calls of both kinds and writes them to standard error at the end.
#include <dlfcn.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "ZORTAVConfiguration.h"
#include "ZORTAVInstructionSet.h"
#include "ZORTAVMatrixProduct.h"
#include "ZORTAVMatrixUtilities.h"
#include "ZORTAVMatrixVectorProduct.h"
#include "ZORTAVPackedSolves.h"
#include "ZORTAVVectorKernels.h"

#define PUBLISHED extern "C" __attribute__((visibility("default")))

namespace {

using Size = const std::int32_t*;
using Length = std::size_t;  // of a character argument

// A routine's name, its calls, and its namesake in the reference.
class Calls {
 public:
  explicit Calls(const char* name) : name_(name), next_(first_) { first_ = this; }
  void ours() { ++ours_; }
  template <class Routine>
  Routine* reference(Routine*) {
    ++handed_on_;
    void* const entry = dlsym(RTLD_NEXT, name_);
    if (entry == nullptr) {
      std::fprintf(stderr, "no %s in the reference\n", name_);
      std::abort();
    }
    Routine* routine = nullptr;
    std::memcpy(&routine, &entry, sizeof routine);
    return routine;
  }
  static void report() {
    for (const Calls* c = first_; c != nullptr; c = c->next_) {
      std::fprintf(stderr, "forwarding: %s ours %ld handed on %ld\n", c->name_, c->ours_, c->handed_on_);
    }
  }

 private:
  static Calls* first_;
  const char* name_;
  Calls* next_;
  long ours_ = 0;
  long handed_on_ = 0;
};

Calls* Calls::first_ = nullptr;

// Before the program and after it.
struct Program {
  Program() {
    std::int32_t active = 0, highest = 0, reason = 0;
    ehgetisa(&active, &highest, &reason);
    if (reason == ZORTavInstructionSetReasonNotOffered) {
      std::fprintf(stderr, "forwarding: the level is not offered\n");
      std::_Exit(77);
    }
    std::fprintf(stderr, "forwarding: level %s\n", ehisanm(&active));
    if (std::getenv("ZORTAV_FORWARDING_TEAM") != nullptr) {
      std::int32_t decision = 0;
      ehaldb(&decision);
    }
  }
  ~Program() { Calls::report(); }
};

const Program program;

bool one_of(char letter, const char* letters) {
  return std::strchr(letters, letter) != nullptr && letter != '\0';
}

}  // namespace

PUBLISHED double ddot_(Size n, const double* x, Size incx, const double* y, Size incy) {
  static Calls calls("ddot_");
  calls.ours();
  return eaxscl(n, x, incx, y, incy);
}

PUBLISHED void daxpy_(Size n, const double* alpha, const double* x, Size incx, double* y, Size incy) {
  static Calls calls("daxpy_");
  calls.ours();
  e_daxpy(n, alpha, x, incx, y, incy);
}

PUBLISHED void dcopy_(Size n, const double* x, Size incx, double* y, Size incy) {
  static Calls calls("dcopy_");
  calls.ours();
  e_dcopy(n, x, incx, y, incy);
}

PUBLISHED void dswap_(Size n, double* x, Size incx, double* y, Size incy) {
  static Calls calls("dswap_");
  calls.ours();
  e_dswap(n, x, incx, y, incy);
}

PUBLISHED void drotg_(double* a, double* b, double* c, double* s) {
  static Calls calls("drotg_");
  calls.ours();
  e_drotg(a, b, c, s);
}

// The reference returns at once for an increment below 1; the library walks by its magnitude.
PUBLISHED void dscal_(Size n, const double* alpha, double* x, Size incx) {
  static Calls calls("dscal_");
  if (*incx < 1) {
    calls.reference (&dscal_)(n, alpha, x, incx);
    return;
  }
  calls.ours();
  e_dscal(n, alpha, x, incx);
}

PUBLISHED double dasum_(Size n, const double* x, Size incx) {
  static Calls calls("dasum_");
  if (*incx < 1) {
    return calls.reference(&dasum_)(n, x, incx);
  }
  calls.ours();
  return e_dasum(n, x, incx);
}

PUBLISHED std::int32_t idamax_(Size n, const double* x, Size incx) {
  static Calls calls("idamax_");
  if (*incx < 1) {
    return calls.reference(&idamax_)(n, x, incx);
  }
  calls.ours();
  return e_idamax(n, x, incx);
}

PUBLISHED double dnrm2_(Size n, const double* x, Size incx) {
  static Calls calls("dnrm2_");
  calls.ours();
  return e_dnrm2(n, x, incx);
}

PUBLISHED void dgemv_(const char* trans, Size m, Size n, const double* alpha, const double* a, Size lda,
                      const double* x, Size incx, const double* beta, double* y, Size incy, Length length) {
  static Calls calls("dgemv_");
  if (!one_of(*trans, "NTC") || *m < 0 || *n < 0 || *lda < std::max(1, *m) || *incx == 0 || *incy == 0) {
    calls.reference (&dgemv_)(trans, m, n, alpha, a, lda, x, incx, beta, y, incy, length);
    return;
  }
  calls.ours();
  eagemv(trans, m, n, alpha, a, lda, x, incx, beta, y, incy, 1);
}

PUBLISHED void dtpsv_(const char* uplo, const char* trans, const char* diag, Size n, const double* ap, double* x,
                      Size incx, Length length1, Length length2, Length length3) {
  static Calls calls("dtpsv_");
  if (!one_of(*uplo, "UuLl") || !one_of(*trans, "NnTtCc") || !one_of(*diag, "UuNn") || *n < 0 || *incx == 0) {
    calls.reference (&dtpsv_)(uplo, trans, diag, n, ap, x, incx, length1, length2, length3);
    return;
  }
  calls.ours();
  e_dtpsv(uplo, trans, diag, n, ap, x, incx, 1, 1, 1);
}

PUBLISHED void dgemm_(const char* transa, const char* transb, Size m, Size n, Size k, const double* alpha,
                      const double* a, Size lda, const double* b, Size ldb, const double* beta, double* c, Size ldc,
                      Length length1, Length length2) {
  static Calls calls("dgemm_");
  const std::int32_t rows_of_a = one_of(*transa, "Nn") ? *m : *k;
  const std::int32_t rows_of_b = one_of(*transb, "Nn") ? *k : *n;
  if (!one_of(*transa, "NnTtCc") || !one_of(*transb, "NnTtCc") || *m < 0 || *n < 0 || *k < 0 ||
      *lda < std::max(1, rows_of_a) || *ldb < std::max(1, rows_of_b) || *ldc < std::max(1, *m)) {
    calls.reference (&dgemm_)(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, length1, length2);
    return;
  }
  calls.ours();
  eagemm(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, 1, 1);
}
