// SPDX-License-Identifier: MIT
#include "ZORTavEnumerations.h"
#include "services/enumerations/enumerator_names.h"

namespace {

constexpr const char* names[] = {
    "ZORTavValueInteger4",       "ZORTavValueReal4",    "ZORTavValueReal8",       "ZORTavValueChar4",
    "ZORTavValueChar1",          "ZORTavValueString",   "ZORTavValueInteger4Ptr", "ZORTavValueReal4Ptr",
    "ZORTavValueReal8Ptr",       "ZORTavValueChar1Ptr", "ZORTavValueChar1PtrPtr", "ZORTavValueZORMathComplexf",
    "ZORTavValueZORMathComplex", "ZORTavValueLast",
};
static_assert(sizeof names / sizeof *names == ZORTavValueLast + 1);

}  // namespace

const char* ZORTavEnumString(ZORTavValue value) {
  return names[value];
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): callers were built for a text by value
int ZORTavValueEnum(ZORUnicodeString text, ZORTavValue) {
  return zortav::status_of_name(text, names);
}
