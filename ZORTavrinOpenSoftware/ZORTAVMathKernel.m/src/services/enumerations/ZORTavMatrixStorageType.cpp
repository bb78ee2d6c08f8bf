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

// NOLINTNEXTLINE(performance-unnecessary-value-param): callers were built for a text by value
int ZORTavMatrixStorageTypeEnum(ZORUnicodeString text, ZORTavMatrixStorageType) {
  return zortav::status_of_name(text, names);
}
