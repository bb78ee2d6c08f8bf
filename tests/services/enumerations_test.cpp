// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <sstream>
#include <string>

#include "ZORStatus.h"
#include "ZORTavEnumerations.h"
#include "ZORTavMatrixVersion.h"

namespace {

// The names of an enumeration in order, the closing one last, and the check of such names.
template <class Enum>
void check(const char* all_names, const char* (*name_of)(Enum), int (*status_of)(ZORUnicodeString, Enum), Enum last) {
  std::istringstream names(all_names);
  std::string name;
  int value = 0;
  for (; std::getline(names, name, ' '); ++value) {
    const auto enumerator = static_cast<Enum>(value);
    EXPECT_STREQ(name_of(enumerator), name.c_str());
    if (status_of != nullptr) {
      // The value given does not matter.
      EXPECT_EQ(status_of(name.c_str(), last), enumerator == last ? E_FAIL : 0) << name;
      EXPECT_EQ(status_of((name + " ").c_str(), enumerator), E_FAIL);
      name.back() ^= 0x20;  // the other case
      EXPECT_EQ(status_of(name.c_str(), enumerator), E_FAIL);
      EXPECT_EQ(status_of("", enumerator), E_FAIL);
    }
  }
  EXPECT_EQ(value, last + 1);
}

TEST(Enumerations, NamesAndChecks) {
  check<ZORTavValue>(
      "ZORTavValueInteger4 ZORTavValueReal4 ZORTavValueReal8 ZORTavValueChar4 ZORTavValueChar1 ZORTavValueString "
      "ZORTavValueInteger4Ptr ZORTavValueReal4Ptr ZORTavValueReal8Ptr ZORTavValueChar1Ptr ZORTavValueChar1PtrPtr "
      "ZORTavValueZORMathComplexf ZORTavValueZORMathComplex ZORTavValueLast",
      ZORTavEnumString, ZORTavValueEnum, ZORTavValueLast);
  check("DenseMatrix SparseMatrix ByBlocMatrix MatrixTypeLast", ZORTavMatrixTypeName, ZORTavMatrixTypeEnum,
        MatrixTypeLast);
  check("PropertySymmetric PropertyAntiSymmetric PropertyHermitian PropertyAntiHermitian PropertyAny PropertyLast",
        ZORTavMatrixPropertyName, ZORTavMatrixPropertyEnum, PropertyLast);
  check("ShapeRectangular ShapeSquare ShapeUpperTriangular ShapeLowerTriangular ShapeDiagonal ShapeLast",
        ZORTavMatrixShapeName, ZORTavMatrixShapeEnum, ShapeLast);
  check("StorageFrontal StorageSkyline StorageLast", ZORTavMatrixStorageTypeName, ZORTavMatrixStorageTypeEnum,
        StorageLast);
  using Category = ZORTavPreproCategory;
  check<Category>(
      "PreproCategoryMesh PreproCategoryAxis PreproCategoryMaterial PreproCategoryProperty PreproCategoryRestraint "
      "PreproCategoryLoad PreproCategoryMass PreproCategoryLast",
      ZORTavEnumString, nullptr, PreproCategoryLast);
  check<Category>("mesh axes materials properties restraints loads masses", ZORTavPreproCategoryName, nullptr,
                  PreproCategoryMass);
  EXPECT_STREQ(ZORTavPreproCategoryName(PreproCategoryLast), "unknown set");
}

// The fields in memory, after the table of virtual operations.
struct Fields {
  void* operations;
  int32_t value[5];
};

void expect_fields(const void* version, int value, int storage, int third, int fourth, int type) {
  static_assert(sizeof(ZORTavMatrixVersion) == sizeof(Fields));
  Fields fields{};
  std::memcpy(&fields, version, sizeof fields);
  const int expected[] = {value, storage, third, fourth, type};
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(fields.value[i], expected[i]) << "field " << i;
  }
}

TEST(MatrixVersion, StartsAndEndsWithTheSameFields) {
  alignas(ZORTavMatrixVersion) unsigned char storage[sizeof(ZORTavMatrixVersion)];
  auto* version = new (storage) ZORTavMatrixVersion;
  expect_fields(version, 13, 2, 5, 4, 3);
  version->Value = ZORTavValueReal8;
  version->StorageType = StorageSkyline;
  version->Shape = ShapeSquare;
  version->Property = PropertySymmetric;
  version->Type = SparseMatrix;
  const ZORTavMatrixVersion copy(*version);
  ZORTavMatrixVersion assigned;
  assigned = copy;
  assigned = *&assigned;
  version->~ZORTavMatrixVersion();
  expect_fields(storage, 13, 2, 5, 4, 3);
  expect_fields(&copy, 2, 1, 1, 0, 1);
  expect_fields(&assigned, 2, 1, 1, 0, 1);
}

}  // namespace
