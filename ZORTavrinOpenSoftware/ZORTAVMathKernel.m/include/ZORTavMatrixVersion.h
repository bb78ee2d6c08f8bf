/* SPDX-License-Identifier: MIT */
/* The kind of a matrix: what it holds, how it is stored, its shape, its property, its type. */
#ifndef ZORTAV_MATRIX_VERSION_H
#define ZORTAV_MATRIX_VERSION_H

#include "ZORTavEnumerations.h"

/**
 * Five enumerators that describe a matrix. Any combination may be stored; nothing is checked.
 *
 * Threads: as a plain structure.
 */
class ZOR_EXPORT ZORTavMatrixVersion {
 public:
  /** No value, no storage, no shape, no type; the property is PropertyAny. */
  ZORTavMatrixVersion();
  ZORTavMatrixVersion(const ZORTavMatrixVersion& other);
  ZORTavMatrixVersion& operator=(const ZORTavMatrixVersion& other);
  /** Leaves the fields as the default constructor sets them. */
  virtual ~ZORTavMatrixVersion();

  ZORTavValue Value;
  ZORTavMatrixStorageType StorageType;
  ZORTavMatrixShape Shape;
  ZORTavMatrixProperty Property;
  ZORTavMatrixType Type;
};

#endif
