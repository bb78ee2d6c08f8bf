// SPDX-License-Identifier: MIT
#include "ZORTavEnumerations.h"
#include "services/enumerations/enumerator_names.h"

namespace {

constexpr const char* names[] = {
    "DenseMatrix",
    "SparseMatrix",
    "ByBlocMatrix",
    "MatrixTypeLast",
};
static_assert(sizeof names / sizeof *names == MatrixTypeLast + 1);

}  // namespace

const char* ZORTavMatrixTypeName(ZORTavMatrixType value) {
  return names[value];
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): callers were built for a text by value
int ZORTavMatrixTypeEnum(ZORUnicodeString text, ZORTavMatrixType) {
  return zortav::status_of_name(text, names);
}
