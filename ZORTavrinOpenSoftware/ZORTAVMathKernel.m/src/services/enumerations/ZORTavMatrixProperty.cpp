// SPDX-License-Identifier: MIT
#include "ZORTavEnumerations.h"
#include "services/enumerations/enumerator_names.h"

namespace {

constexpr const char* names[] = {
    "PropertySymmetric",     "PropertyAntiSymmetric", "PropertyHermitian",
    "PropertyAntiHermitian", "PropertyAny",           "PropertyLast",
};
static_assert(sizeof names / sizeof *names == PropertyLast + 1);

}  // namespace

const char* ZORTavMatrixPropertyName(ZORTavMatrixProperty value) {
  return names[value];
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): callers were built for a text by value
int ZORTavMatrixPropertyEnum(ZORUnicodeString text, ZORTavMatrixProperty) {
  return zortav::status_of_name(text, names);
}
