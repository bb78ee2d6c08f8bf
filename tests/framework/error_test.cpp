// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "ZORResourceError.h"
#include "support/files.h"

namespace {

class CountedError : public ZORResourceError {
 public:
  explicit CountedError(int& alive) : ZORResourceError("ERR_0302", "ZORTAVMathKernelError"), alive_(alive) { ++alive_; }
  CountedError(const CountedError& other) : ZORResourceError(other), alive_(other.alive_) { ++alive_; }
  ~CountedError() override { --alive_; }
  CountedError& operator=(const CountedError&) = delete;
  ZORError* CloneSelf() const override { return new CountedError(*this); }

 private:
  int& alive_;
};

TEST(Error, LivesUntilItsLastReferenceIsGivenUp) {
  int alive = 0;
  ZORError* const error = new CountedError(alive);
  EXPECT_EQ(error->AddRef(), 2U);
  ZORError* const copy = error->CloneSelf();
  EXPECT_EQ(alive, 2);
  EXPECT_EQ(copy->Release(), 0U) << "a copy has one reference of its own";
  EXPECT_EQ(error->Release(), 1U);
  EXPECT_EQ(alive, 1);
  EXPECT_EQ(error->Release(), 0U);
  EXPECT_EQ(alive, 0);
}

TEST(Error, KnowsItsClass) {
  ZORResourceError error("ERR_0001", "ZORTavrinError");
  const ZORBaseObject& object = error;
  EXPECT_STREQ(object.IsA(), "ZORResourceError");
  EXPECT_EQ(object.GetMetaObject()->GetBase(), ZORError::MetaObject());
  for (const char* name : {"ZORResourceError", "ZORError", "ZORBaseObject"}) {
    EXPECT_EQ(object.IsAKindOf(name), 1) << name;
    void* same = nullptr;
    EXPECT_EQ(error.QueryInterface(name, &same), 0);
    EXPECT_EQ(same, static_cast<ZORBaseObject*>(&error));
    EXPECT_EQ(error.Release(), 1U);
  }
  for (const char* name : {"ZORTavError", "", static_cast<const char*>(nullptr)}) {
    void* same = &error;
    EXPECT_EQ(object.IsAKindOf(name), 0);
    EXPECT_EQ(error.QueryInterface(name, &same), ZORStatusNoInterface);
    EXPECT_EQ(same, nullptr);
  }
  EXPECT_EQ(ZORError().IsAKindOf("ZORResourceError"), 0);
}

// The operations of the base classes that a kind of error may leave alone.
TEST(Error, OneWithoutACatalogHasNothingToTell) {
  ZORError error(17);
  EXPECT_EQ(error.GetId(), 17U);
  EXPECT_STREQ(error.GetMsgId(), "");
  EXPECT_STREQ(error.GetMsgCatalog(), "");
  const ZORUnicodeString parameter("unused");
  error.SetNLSParameters(1, &parameter, 1, &parameter, 1, &parameter);
  EXPECT_TRUE(error.GetNLSMessage().IsEmpty() && error.GetNLSHelpFile().IsEmpty() &&
              error.GetNLSHelpContext().IsEmpty() && error.GetNLSSource().IsEmpty());
  EXPECT_EQ(zortav::test::captured(stderr, [&] { error.Display(); }), "\n");
  EXPECT_EQ(zortav::test::captured(stderr, [&] { error.PrintHistory(); }), "  () \n");
  int32_t length = -1;
  EXPECT_EQ(error.GetErrorTable(&length), nullptr);
  EXPECT_EQ(length, 0);
  EXPECT_STREQ(error.IsA(), "ZORError");
  ZORError* const copy = error.CloneSelf();
  EXPECT_EQ(copy->GetId(), 17U);
  EXPECT_EQ(copy->Release(), 0U);
}

TEST(Error, AsAnObjectOffersNoAutomationAndStandsForItself) {
  ZORBaseObject object;
  ZORBaseObject other(object);
  other = object;
  EXPECT_STREQ(object.IsA(), "ZORBaseObject");
  EXPECT_STREQ(object.GetMetaObject()->GetInterfaceName(), "ZORNull");
  EXPECT_STREQ(object.GetMetaObject()->GetFramework(), "ZORFramework");
  EXPECT_EQ(object.IsAKindOf("ZORError"), 0);
  void* result = &object;
  EXPECT_EQ(object.QueryInterface(ZORUuid(), &result), ZORStatusNoInterface);
  EXPECT_EQ(result, nullptr);
  uint32_t count = 9;
  EXPECT_EQ(object.GetTypeInfoCount(&count), 0);
  EXPECT_EQ(count, 0U);
  result = &object;
  EXPECT_EQ(object.GetTypeInfo(0, 0, &result), ZORStatusNotOffered);
  EXPECT_EQ(result, nullptr);
  EXPECT_EQ(object.GetIDsOfNames(ZORUuid(), nullptr, 0, 0, nullptr), ZORStatusNotOffered);
  EXPECT_EQ(object.Invoke(0, ZORUuid(), 0, 0, nullptr, nullptr, nullptr, nullptr), ZORStatusNotOffered);
  EXPECT_EQ(object.GetImpl(), &object);
  object.SetImpl(&other);
  object.ChangeComponentState(0, 1, nullptr);
  EXPECT_EQ(object.GetImpl(), &other);
  EXPECT_EQ(object.IsNull(), 0);
  EXPECT_TRUE(object.IsEqual(&object) == 1 && object.IsEqual(&other) == 0 && object.IsEqual(nullptr) == 0);
}

TEST(Error, ACopyAndAnAssignmentTellTheSame) {
  ZORResourceError error(302, "ERR_0302", "ZORTAVMathKernelError");
  const ZORUnicodeString parameters[] = {"1000", "900"};
  error.SetNLSDiagnosticParams(2, parameters);
  error.Setup("source.cpp", 12);
  error.SetSourceContext("context");
  error.SetReturnCode(E_FAIL);
  error.SetInformationOnErrorType(3);
  ZORResourceError assigned;
  assigned = error;
  ZORError* const clone = error.CloneSelf();
  error = ZORResourceError();
  EXPECT_TRUE(error.GetNLSSource().IsEmpty() && error.GetReturnCode() == 0);
  for (ZORError* e : {static_cast<ZORError*>(&assigned), clone}) {
    EXPECT_EQ(e->GetId(), 302U);
    EXPECT_NE(std::strstr(e->GetNLSDiagnostic().GetText(), "1000 kilo"), nullptr);
    EXPECT_STREQ(e->GetNLSSource().GetText(), "source.cpp, 12");
    EXPECT_STREQ(e->GetSourceContext(), "context");
    EXPECT_EQ(e->GetReturnCode(), E_FAIL);
    EXPECT_EQ(e->GetInformationOnErrorType(), 3);
  }
  clone->Release();
}

TEST(Error, ThrowEndsTheProcessWithTheWholeMessage) {
  EXPECT_EXIT(
      ZORResourceError("ERR_1025", "ZORTAVMathKernelError").Throw("source.cpp", 12), testing::ExitedWithCode(1),
      testing::AllOf(testing::HasSubstr("too large to be counted"), testing::EndsWith("(source.cpp, line 12)\n")));
}

// The place of a virtual operation in its class's table, as the platform's C++ encodes it.
template <class Operation>
std::ptrdiff_t place(Operation operation) {
  std::ptrdiff_t offset_and_one = 0;
  std::memcpy(&offset_and_one, &operation, sizeof offset_and_one);
  return (offset_and_one - 1) / static_cast<std::ptrdiff_t>(sizeof(void*));
}

constexpr struct {
} destructor;  // of which no pointer can be had; it has two places

// How many of the operations are not at the place in the table that they have in this list.
template <class... Operations>
int misplaced(Operations... operations) {
  std::ptrdiff_t expected = 0;
  const auto is_misplaced = [&expected](auto operation) {
    if constexpr (std::is_member_function_pointer_v<decltype(operation)>) {
      return place(operation) == expected++ ? 0 : 1;
    } else {
      expected += 2;
      return 0;
    }
  };
  int count = 0;
  ((count += is_misplaced(operations)), ...);
  return count;
}

TEST(Error, TheOrderOfItsVirtualOperationsIsFixed) {
  using E = ZORError;
  using ByIdentifier = int32_t (ZORBaseObject::*)(const ZORUuid&, void**);
  using ByName = int32_t (ZORBaseObject::*)(const char*, void**);
  EXPECT_EQ(
      misplaced(static_cast<ByIdentifier>(&E::QueryInterface), &E::AddRef, &E::Release, &E::GetTypeInfoCount,
                &E::GetTypeInfo, &E::GetIDsOfNames, &E::Invoke, static_cast<ByName>(&E::QueryInterface), destructor,
                &E::GetMetaObject, &E::IsA, &E::IsAKindOf, &E::GetImpl, &E::SetImpl, &E::IsNull, &E::IsEqual,
                &E::ChangeComponentState, &E::GetId, &E::GetMsgId, &E::GetMsgCatalog, &E::GetSourceFileName,
                &E::SetSourceFileName, &E::GetSourceLineNumber, &E::SetSourceLineNumber, &E::GetMessageText,
                &E::GetNLSMessage, &E::GetNLSRequest, &E::GetNLSDiagnostic, &E::GetNLSAdvice, &E::GetNLSSource,
                &E::GetNLSHelpFile, &E::GetNLSHelpContext, &E::Display, &E::PrintHistory, &E::Throw,
                &E::SetNLSParameters, &E::SetNLSRequestParams, &E::SetNLSDiagnosticParams, &E::SetNLSAdviceParams,
                &E::SetSourceContext, &E::GetSourceContext, &E::GetReturnCode, &E::SetReturnCode,
                &E::GetInformationOnErrorType, &E::SetInformationOnErrorType, &E::CloneSelf, &E::GetErrorTable),
      0);
}

}  // namespace
