// SPDX-License-Identifier: MIT
#include "ZORTavEnumerations.h"
#include "services/enumerations/enumerator_names.h"

namespace {

constexpr const char* names[] = {
    "ShapeRectangular", "ShapeSquare", "ShapeUpperTriangular", "ShapeLowerTriangular", "ShapeDiagonal", "ShapeLast",
};
static_assert(sizeof names / sizeof *names == ShapeLast + 1);

}  // namespace

const char* ZORTavMatrixShapeName(ZORTavMatrixShape value) {
  return names[value];
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): callers were built for a text by value
int ZORTavMatrixShapeEnum(ZORUnicodeString text, ZORTavMatrixShape) {
  return zortav::status_of_name(text, names);
}
