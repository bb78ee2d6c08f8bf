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

int ZORTavValueEnum(ZORUnicodeString text,
                    ZORTavValue) {  // NOLINT(performance-unnecessary-value-param): by value, as declared
  return zortav::status_of_name(text, names);
}
