/* SPDX-License-Identifier: MIT */
/* The kinds of values, matrices and pre-processing data that the solver's modules exchange, and their names. */
#ifndef ZORTAV_ENUMERATIONS_H
#define ZORTAV_ENUMERATIONS_H

#include <stdint.h>

#include "ZORExport.h"
#include "ZORUnicodeString.h"

/** What a value, an optional argument or an array holds. */
enum ZORTavValue : int32_t {
  ZORTavValueInteger4,
  ZORTavValueReal4,
  ZORTavValueReal8,
  ZORTavValueChar4,
  ZORTavValueChar1,
  ZORTavValueString,
  ZORTavValueInteger4Ptr,
  ZORTavValueReal4Ptr,
  ZORTavValueReal8Ptr,
  ZORTavValueChar1Ptr,
  ZORTavValueChar1PtrPtr,
  ZORTavValueZORMathComplexf, /**< single-precision complex */
  ZORTavValueZORMathComplex,  /**< double-precision complex */
  ZORTavValueLast             /**< no value: marks an argument that is not given */
};

/** The sets of pre-processing data. */
enum ZORTavPreproCategory : int32_t {
  PreproCategoryMesh,
  PreproCategoryAxis,
  PreproCategoryMaterial,
  PreproCategoryProperty,
  PreproCategoryRestraint,
  PreproCategoryLoad,
  PreproCategoryMass,
  PreproCategoryLast
};

enum ZORTavMatrixType : int32_t { DenseMatrix, SparseMatrix, ByBlocMatrix, MatrixTypeLast };

enum ZORTavMatrixProperty : int32_t {
  PropertySymmetric,
  PropertyAntiSymmetric,
  PropertyHermitian,
  PropertyAntiHermitian,
  PropertyAny,
  PropertyLast
};

enum ZORTavMatrixShape : int32_t {
  ShapeRectangular,
  ShapeSquare,
  ShapeUpperTriangular,
  ShapeLowerTriangular,
  ShapeDiagonal,
  ShapeLast
};

enum ZORTavMatrixStorageType : int32_t { StorageFrontal, StorageSkyline, StorageLast };

/**
 * The name of an enumerator, spelled as in the code: ZORTavEnumString(ZORTavValueReal8) is "ZORTavValueReal8".
 *
 * @param value [in] an enumerator, the closing one included. It is not checked: any other value reads past the table.
 * @return a zero-terminated text that lives as long as the library.
 *
 * Threads: may be called from any thread.
 */
ZOR_EXPORT const char* ZORTavEnumString(ZORTavValue value);
ZOR_EXPORT const char* ZORTavEnumString(ZORTavPreproCategory value);
ZOR_EXPORT const char* ZORTavMatrixTypeName(ZORTavMatrixType value);
ZOR_EXPORT const char* ZORTavMatrixPropertyName(ZORTavMatrixProperty value);
ZOR_EXPORT const char* ZORTavMatrixShapeName(ZORTavMatrixShape value);
ZOR_EXPORT const char* ZORTavMatrixStorageTypeName(ZORTavMatrixStorageType value);

/**
 * What a set of pre-processing data is called in a listing: "mesh", "axes", "materials", "properties", "restraints",
 * "loads", "masses" or, for PreproCategoryLast, "unknown set". Otherwise as the functions above.
 */
ZOR_EXPORT const char* ZORTavPreproCategoryName(ZORTavPreproCategory value);

/**
 * Whether a text is the name of an enumerator, letter by letter. The closing enumerator (..Last) is none.
 *
 * @param text  [in] the text.
 * @param value [in] says which enumeration is meant; it is not read, and the enumerator that the text names is not
 *              handed back. A caller that needs it goes through the names.
 * @return 0 when it is, 0x80004005 (negative) when not.
 *
 * Threads: may be called from any thread.
 */
ZOR_EXPORT int ZORTavValueEnum(ZORUnicodeString text, ZORTavValue value);
ZOR_EXPORT int ZORTavMatrixTypeEnum(ZORUnicodeString text, ZORTavMatrixType value);
ZOR_EXPORT int ZORTavMatrixPropertyEnum(ZORUnicodeString text, ZORTavMatrixProperty value);
ZOR_EXPORT int ZORTavMatrixShapeEnum(ZORUnicodeString text, ZORTavMatrixShape value);
ZOR_EXPORT int ZORTavMatrixStorageTypeEnum(ZORUnicodeString text, ZORTavMatrixStorageType value);

#endif
