// SPDX-License-Identifier: MIT
#include "ZORTavMatrixVersion.h"

#include "services/leave_behind.h"

ZORTavMatrixVersion::ZORTavMatrixVersion()
    : Value(ZORTavValueLast), StorageType(StorageLast), Shape(ShapeLast), Property(PropertyAny), Type(MatrixTypeLast) {}

ZORTavMatrixVersion::ZORTavMatrixVersion(const ZORTavMatrixVersion& other) = default;

ZORTavMatrixVersion& ZORTavMatrixVersion::operator=(const ZORTavMatrixVersion& other) = default;

ZORTavMatrixVersion::~ZORTavMatrixVersion() {
  zortav::leave_behind(Value, ZORTavValueLast);
  zortav::leave_behind(StorageType, StorageLast);
  zortav::leave_behind(Shape, ShapeLast);
  zortav::leave_behind(Property, PropertyAny);
  zortav::leave_behind(Type, MatrixTypeLast);
}
