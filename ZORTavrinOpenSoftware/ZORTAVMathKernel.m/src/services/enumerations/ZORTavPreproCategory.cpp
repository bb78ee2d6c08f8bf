// SPDX-License-Identifier: MIT
#include "ZORTavEnumerations.h"

namespace {

constexpr const char* names[] = {
    "PreproCategoryMesh",      "PreproCategoryAxis", "PreproCategoryMaterial", "PreproCategoryProperty",
    "PreproCategoryRestraint", "PreproCategoryLoad", "PreproCategoryMass",     "PreproCategoryLast",
};
static_assert(sizeof names / sizeof *names == PreproCategoryLast + 1);

constexpr const char* listing_names[] = {
    "mesh", "axes", "materials", "properties", "restraints", "loads", "masses", "unknown set",
};
static_assert(sizeof listing_names / sizeof *listing_names == PreproCategoryLast + 1);

}  // namespace

const char* ZORTavEnumString(ZORTavPreproCategory value) {
  return names[value];
}

const char* ZORTavPreproCategoryName(ZORTavPreproCategory value) {
  return listing_names[value];
}
