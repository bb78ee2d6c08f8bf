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

int ZORTavMatrixPropertyEnum(
    ZORUnicodeString text,
    ZORTavMatrixProperty) {  // NOLINT(performance-unnecessary-value-param): by value, as declared
  return zortav::status_of_name(text, names);
}
