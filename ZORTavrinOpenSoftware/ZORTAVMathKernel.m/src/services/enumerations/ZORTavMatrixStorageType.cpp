// SPDX-License-Identifier: MIT
#include "ZORTavEnumerations.h"
#include "services/enumerations/enumerator_names.h"

namespace {

constexpr const char* names[] = {
    "StorageFrontal",
    "StorageSkyline",
    "StorageLast",
};
static_assert(sizeof names / sizeof *names == StorageLast + 1);

}  // namespace

const char* ZORTavMatrixStorageTypeName(ZORTavMatrixStorageType value) {
  return names[value];
}

int ZORTavMatrixStorageTypeEnum(
    ZORUnicodeString text,
    ZORTavMatrixStorageType) {  // NOLINT(performance-unnecessary-value-param): by value, as declared
  return zortav::status_of_name(text, names);
}
