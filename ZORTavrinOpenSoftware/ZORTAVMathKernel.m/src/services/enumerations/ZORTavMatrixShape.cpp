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

int ZORTavMatrixShapeEnum(ZORUnicodeString text,
                          ZORTavMatrixShape) {  // NOLINT(performance-unnecessary-value-param): by value, as declared
  return zortav::status_of_name(text, names);
}
