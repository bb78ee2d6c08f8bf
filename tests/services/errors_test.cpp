// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "ZORStatus.h"
#include "ZORTavError.h"
#include "ZORTavErrorTools.h"
#include "ZORTavListingServices.h"
#include "services/reports.h"

extern "C" {
__attribute__((weak)) void __lsan_disable();
__attribute__((weak)) void __lsan_enable();
}

namespace {

using Texts = std::vector<std::string>;

const zortest::Reports::Messages messages = {{"ERR_0007", "error 7"},
                                             {"WARN_0007", "warning 7"},
                                             {"INFO_0007", "information 7"},
                                             {"WARN_0012", "warning 12"},
                                             {"INFO_0012", "information 12"},
                                             {"INFO_0300", "information 300"},
                                             {"ERR_12345", "error 12345"},
                                             {"ERR_-0003", "error -3"},
                                             {"ERR_0025", "/p1,/p2,/p10|/p11,/p12,/p20|/p21,/p22,/p25."}};

constexpr char internal_banner[] = "\n**************** INTERNAL ERROR ***************\n";
constexpr char error_banner[] = "\n******************** ERROR ********************\n";
constexpr char warning_banner[] = "\n******************* WARNING *******************\n";
constexpr char information_banner[] = "\n***************** INFORMATION *****************\n";
constexpr char closing[] = "\n***********************************************\n\n";

// Counts the errors that live.
struct Counted : ZORTavError {
  Counted() : ZORTavError("", "Test") { ++alive; }
  explicit Counted(const char* id) : ZORTavError(id, "Test") { ++alive; }
  Counted(const Counted& other) : ZORTavError(other) { ++alive; }
  ~Counted() override { --alive; }
  static inline int alive = 0;
};

struct Errors : testing::Test {
  Errors() { reports.write("ZORTavrinError", {{"ERR_0005", "tavrin /p1/p21"}}); }
  zortest::Reports reports{"Test", messages};

  void expect_report(const std::string& report) { EXPECT_EQ(reports.take(), Texts{report}); }
};

TEST_F(Errors, TheCatalogDecidesHowBadTheyAre) {
  const struct {
    int id;
    const char* banner;
    const char* message;
    const char* told;  // to the hook
  } cases[] = {{7, error_banner, "error 7", "1 ERR_0007 "},
               {12, warning_banner, "warning 12", "2 WARN_0012 "},
               {300, information_banner, "information 300", nullptr},
               {12345, error_banner, "error 12345", "1 ERR_12345 "},
               {-3, error_banner, "error -3", "1 ERR_-0003 "},
               {99, internal_banner, "Message not found\nCatalog: Test\nIdentifier: 99", "0 ERR_0001 "}};
  for (const auto& expected : cases) {
    for (const bool warning : {false, true}) {
      if (expected.told == nullptr && __lsan_disable != nullptr) {
        __lsan_disable();  // nobody holds an information
      }
      (warning ? ZORTavErrorTools::CreateWarning : ZORTavErrorTools::CreateError)(expected.id, "Test", {}, {}, {}, {},
                                                                                  {}, {}, {}, {}, {});
      if (expected.told == nullptr && __lsan_enable != nullptr) {
        __lsan_enable();
      }
      EXPECT_EQ(reports.printed(), std::string(expected.banner) + expected.message + closing);
      EXPECT_EQ(reports.take(),
                expected.told == nullptr ? Texts{} : Texts{std::string(expected.told) + expected.message});
    }
  }
}

TEST_F(Errors, ShowTheirParametersWithoutGaps) {
  const ZORTavTypeEncapError& none = ZORTavTypeEncapError::EmptyEncapEr;
  const char* null = nullptr;
  ZORTavErrorTools::CreateError(25, "Test");
  expect_report("1 ERR_0025 ,,|,,|,,.");
  ZORTavErrorTools::CreateError(25, "Test", none, -4, null, 0.1, "a", none, 5, "b", 123456789.0);
  expect_report("1 ERR_0025 -4,5,|0.1,1.23457e+08,|a,b,.");
  ZORTavErrorTools::CreateWarning(25, "Test", "1", "2", "3", "4", "5", "6", "7", "8", "/p1");
  expect_report("1 ERR_0025 ,,|,,|1,2,5.");

  ZORRawCollint integers;
  ZORRawColldouble reals;
  ZORListValZORUnicodeString texts;
  for (int i = 1; i <= 30; ++i) {
    integers.Append(i);
    reals.Append(i + 0.5);
    texts.Append(std::string(static_cast<std::size_t>(i), 'x').c_str());
  }
  (new Counted)->CreateTavrinError(25, integers, reals, texts);
  expect_report("1 ERR_0025 1,2,10|1.5,2.5,10.5|x,xx,xxxxx.");
  ZORUnicodeString parameters[25];
  for (int i = 0; i < 25; ++i) {
    parameters[i] = std::to_string(i + 1).c_str();
  }
  (new Counted)->CreateTavrinError(25, "not used", parameters);
  expect_report("1 ERR_0025 1,2,10|11,12,20|21,22,25.");
}

TEST_F(Errors, ComeOutOfEveryFormOfRaising) {
  ZORTavErrorTools::Create(5, 8, "x");
  expect_report("1 ERR_0005 tavrin 8x");
  CreateTavrinError(5, "x", 8);
  expect_report("1 ERR_0005 tavrin 8x");
  CreateTavrinError(6);
  expect_report("0 ERR_0001 Message not found\nCatalog: ZORTavrinError\nIdentifier: 6");
  reports.printed();
  ZORTavErrorTools::Create("free text");
  expect_report("0 ERR_0001 free text");
  EXPECT_EQ(reports.printed(), std::string(internal_banner) + "free text" + closing);
  ZORTavErrorTools::Create(static_cast<const char*>(nullptr));
  expect_report("0 ERR_0001 ");

  const int32_t parameter = -2147483647 - 1;
  int32_t flag = 0;
  std::string text(80, ' ');
  text.replace(0, 4, "TEXT");
  EXPECT_EQ(ehrprog(&parameter, (text + "next argument").c_str(), &flag, 80), 1);
  EXPECT_EQ(flag, 1);
  expect_report("0 ERR_0001 Parameter: -2147483648\n" + text);
  EXPECT_EQ(ehrprog(&flag, "short", &flag), 1);
  expect_report("0 ERR_0001 Parameter: 1\nshort");
}

TEST_F(Errors, EndWhenTheyAreRaisedButInformations) {
  const auto raise = [](ZORTavError* error, int id) { error->CreateTavrinError(id, "", nullptr); };
  for (const int id : {7, 12, 99}) {
    raise(new Counted, id);
    EXPECT_EQ(Counted::alive, 0) << id;
  }
  reports.take();
  (new Counted("ERR_0007"))->Activate();  // the catalog was not asked
  expect_report("0 ERR_0007 error 7");
  EXPECT_EQ(Counted::alive, 0);

  auto* information = new Counted;
  raise(information, 300);
  EXPECT_EQ(information->GetSeverity(), 3);
  EXPECT_EQ(information->GetInformationOnErrorType(), 3);
  information->Activate();
  EXPECT_EQ(information->Release(), 0U);
  EXPECT_EQ(Counted::alive, 0);

  // A hook that takes a reference keeps the error.
  static ZORTavError* kept = nullptr;
  const ZORTavErrorLog keep = [](ZORTavError* error) {
    error->AddRef();
    kept = error;
  };
  ZORTavErrorLog before = nullptr;
  GetErrorLog(&before);
  EXPECT_NE(before, nullptr);
  SetErrorLog(keep);
  ZORTavErrorLog now = nullptr;
  GetErrorLog(&now);
  EXPECT_EQ(now, keep);
  raise(new Counted, 12);
  ASSERT_NE(kept, nullptr);
  EXPECT_EQ(Counted::alive, 1);
  EXPECT_EQ(kept->GetInformationOnErrorType(), 3);
  SetErrorLog(nullptr);
  EXPECT_EQ(kept->AddRef(), 2U);
  kept->Activate();
  EXPECT_EQ(kept->Release(), 0U);
  EXPECT_EQ(Counted::alive, 0);
}

TEST_F(Errors, CopiesTellTheSame) {
  Counted error("ERR_0012");
  EXPECT_EQ(error.GetSeverity(), 0);
  error.GetSeverityFromCatalog(12);
  EXPECT_EQ(error.Setup("file.cpp", 7), &error);
  EXPECT_EQ(error.GetSourceLineNumber(), 7);
  EXPECT_EQ(error.Self(), &error);
  ZORTavError* clone = error.CloneSelf();
  ZORTavError assigned(4U);
  EXPECT_EQ(assigned.GetId(), 4U);
  assigned = error;
  for (ZORTavError* copy : {clone, &assigned}) {
    EXPECT_EQ(copy->GetSeverity(), 2);
    EXPECT_STREQ(copy->GetMsgId(), "WARN_0012");
    EXPECT_TRUE(copy->GetNLSMessage() == "warning 12");
  }
  EXPECT_EQ(clone->Release(), 0U);
  const ZORTavError with_id(9, "INFO_0300", "Test");
  EXPECT_EQ(with_id.GetId(), 9U);
  EXPECT_TRUE(with_id.GetNLSDiagnostic() == "information 300");
}

TEST_F(Errors, GoIntoTheSolverLogWhileItIsOpen) {
  ASSERT_EQ(ZORTavListingServices::Set(reports.folder.path().c_str()), 0);
  const std::string log = reports.folder / ZORTavListingServices::GetFileName().GetText();
  const auto raise = [] { ZORTavErrorTools::CreateError(7, "Test"); };
  raise();
  EXPECT_EQ(reports.printed(), "");
  ASSERT_EQ(ZORTavListingServices::Reset(), 0);
  raise();
  const std::string report = std::string(error_banner) + "error 7" + closing;
  EXPECT_EQ(reports.printed(), report);
  EXPECT_EQ(zortav::test::contents(log), report);
}

TEST_F(Errors, KnowTheirClassAndSaySoQuietly) {
  const Counted error;
  int32_t length = -1;
  EXPECT_EQ(error.GetErrorTable(&length), nullptr);
  EXPECT_EQ(length, 0);
  EXPECT_EQ(error.IsAKindOf("ZORTavError") + error.IsAKindOf("ZORResourceError") + error.IsAKindOf("ZORError"), 3);
  EXPECT_EQ(error.IsAKindOf("ZORTav"), 0);
  EXPECT_TRUE(error.GetMetaObject() == ZORTavError::MetaObject() && ZORTavError::CreateItself() == nullptr);
  error.PrintStack();
  error.PrintMsgError(1, "text", 2);
  EXPECT_EQ(reports.printed(), "");
}

}  // namespace
