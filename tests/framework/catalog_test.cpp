// SPDX-License-Identifier: MIT
// The messages of catalogs, as an error tells them. Files are kept once read: every case has a folder of its own.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "ZORResourceError.h"
#include "support/files.h"
#include "test_system.h"

namespace {

using zortav::test::captured;
using zortav::test::ScratchFolder;
using zortav::test::write;

const std::string between(1, zortest::list_separator);

class Catalog : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
      zortest::remove_variable(name);
    }
    zortest::set_variable("ZOR_MESSAGE_CATALOG_PATH", folder_.path().c_str());
  }
  void TearDown() override { zortest::remove_variable("ZOR_MESSAGE_CATALOG_PATH"); }

  // One message of the catalog file "Own_en.json" in this case's folder.
  void hold(const std::string& message) const { write(folder_ / "Own_en.json", "{\"ERR_0007\": " + message + "}"); }

  ScratchFolder folder_;
};

std::string diagnostic(const char* catalog, const char* id, const std::vector<ZORUnicodeString>& parameters = {}) {
  ZORResourceError error(id, catalog);
  error.SetNLSDiagnosticParams(static_cast<int32_t>(parameters.size()), parameters.data());
  return error.GetNLSDiagnostic().GetText();
}

std::string own() {
  return diagnostic("Own", "ERR_0007");
}

TEST_F(Catalog, AMessageIsItsRequestDiagnosticAndAdvice) {
  hold(R"({"request": "r /p1", "diagnostic": "d /p1", "advice": "a /p1", "help_file": "h", "help_context": "c"})");
  ZORResourceError error("ERR_0007", "Own");
  const ZORUnicodeString r = "1";
  const ZORUnicodeString d = "2";
  const ZORUnicodeString a = "3";
  error.SetNLSParameters(1, &r, 1, &d, 1, &a);
  EXPECT_STREQ(error.GetNLSMessage().GetText(), "r 1\nd 2\na 3");
  EXPECT_STREQ(error.GetMessageText().GetText(), "r 1\nd 2\na 3");
  EXPECT_STREQ(error.GetNLSHelpFile().GetText(), "h");
  EXPECT_STREQ(error.GetNLSHelpContext().GetText(), "c");
  EXPECT_EQ(captured(stderr, [&] { error.Display(); }), "r 1\nd 2\na 3\n");
  error.SetNLSDiagnosticParams(1, nullptr);
  EXPECT_STREQ(error.GetNLSMessage().GetText(), "r 1\nd \na 3");
  EXPECT_EQ(diagnostic("Own", "ERR_0008"), "");
}

TEST_F(Catalog, ParametersGoByNumber) {
  std::vector<ZORUnicodeString> parameters;
  for (int i = 1; i <= 30; ++i) {
    parameters.push_back(ZORUnicodeString("<") + std::to_string(i).c_str() + ">");
  }
  parameters[4] = "/p1";
  parameters[5] = "";
  const char* const cases[][2] = {{"/p1 /p2/p3.", "<1> <2><3>."},
                                  {"/p12 /p1 2", "<12> <1> 2"},
                                  {"/p25 /p26 /p123 /p100", "<25> <2>6 <12>3 <10>0"},
                                  {"/p5 [/p6]", "/p1 []"},
                                  {"/p0 /p /px /P1 / //p1 1/2/", "/p0 /p /px /P1 / /<1> 1/2/"},
                                  {"/p01 /p-1 /p99", "/p01 /p-1 <9>9"}};
  for (const auto& c : cases) {
    const ScratchFolder folder;
    zortest::set_variable("ZOR_MESSAGE_CATALOG_PATH", folder.path().c_str());
    write(folder / "Own_en.json", R"({"ERR_0007": {"diagnostic": ")" + std::string(c[0]) + R"("}})");
    EXPECT_EQ(diagnostic("Own", "ERR_0007", parameters), c[1]);
  }
  hold(R"({"diagnostic": "[/p1/p25]"})");
  zortest::set_variable("ZOR_MESSAGE_CATALOG_PATH", folder_.path().c_str());
  EXPECT_EQ(own(), "[]");
}

TEST_F(Catalog, TheLocaleChoosesTheLanguage) {
  write(folder_ / "Own_en.json", R"({"ERR_0007": {"diagnostic": "en"}, "ERR_0008": {"diagnostic": "en only"}})");
  write(folder_ / "Own_fr.json", R"({"ERR_0007": {"diagnostic": "fr"}})");
  write(folder_ / "Own_de.json", R"({"ERR_0007": {"diagnostic": "de"}})");
  EXPECT_EQ(own(), "en");
  zortest::set_variable("LANG", "fr_CA.UTF-8");
  EXPECT_EQ(own(), "fr");
  EXPECT_EQ(diagnostic("Own", "ERR_0008"), "en only");
  zortest::set_variable("LC_MESSAGES", "de");
  EXPECT_EQ(own(), "de");
  zortest::set_variable("LC_ALL", "fr@euro");
  EXPECT_EQ(own(), "fr");
  zortest::set_variable("LC_ALL", "");
  EXPECT_EQ(own(), "de");
  for (const char* no_language : {"C", "POSIX", "C.UTF-8", "it_IT", "../fr", "FR", "_"}) {
    zortest::set_variable("LC_ALL", no_language);
    EXPECT_EQ(own(), "en") << no_language;
  }
}

TEST_F(Catalog, OwnMessagesAreCompiledInBehindTheirFiles) {
  const char* const kernel = "ZORTAVMathKernelError";
  const std::vector<ZORUnicodeString> parameters = {"2000", "1900"};
  for (const std::string language : {"en", "fr"}) {
    zortest::set_variable("LANG", language.c_str());
    for (const char* id : {"WARN_0300", "ERR_0302"}) {
      const std::string text = diagnostic(kernel, id, parameters);
      EXPECT_LT(text.find("2000 kilo"), text.find("1900 kilo")) << text;
      EXPECT_NE(text.find(language == "fr" ? "sont" : "are"), std::string::npos) << text;
    }
    EXPECT_NE(diagnostic(kernel, "ERR_1025"), "");
    EXPECT_NE(diagnostic(kernel, "WARN_1026"), "");
  }
  const std::string compiled_in = diagnostic(kernel, "ERR_1025");
  const ScratchFolder folder;
  zortest::set_variable("ZOR_MESSAGE_CATALOG_PATH", folder.path().c_str());
  write(folder / "ZORTAVMathKernelError_fr.json", R"({"ERR_0302": {"diagnostic": "ours"}})");
  EXPECT_EQ(diagnostic(kernel, "ERR_0302"), "ours");
  EXPECT_EQ(diagnostic(kernel, "ERR_1025"), compiled_in);
}

TEST_F(Catalog, TheInternalErrorIsKnownInEveryCatalog) {
  hold("{}");
  const ZORUnicodeString text = "Null Allocation Length";
  for (const char* catalog : {"ZORTavrinError", "ZORTAVMathKernelError", "Own", "NoSuchCatalog", "", "../Own"}) {
    ZORResourceError error("ERR_0001", catalog);
    error.SetNLSAdviceParams(1, &text);
    EXPECT_STREQ(error.GetNLSMessage().GetText(), text.GetText()) << catalog;
    EXPECT_TRUE(error.GetNLSDiagnostic().IsEmpty()) << "a diagnostic would make it an error of its own";
  }
}

TEST_F(Catalog, NoInternalErrorLosesItsText) {
  const ZORUnicodeString text = "Null Allocation Length";
  for (const char* advice : {"Call the hot line.", "", "/p12", "Call the hot line: /p1"}) {
    const ScratchFolder folder;
    zortest::set_variable("ZOR_MESSAGE_CATALOG_PATH", folder.path().c_str());
    write(folder / "ZORTavrinError_en.json", std::string(R"({"ERR_0001": {"advice": ")") + advice + "\"}}");
    ZORResourceError error("ERR_0001", "ZORTavrinError");
    error.SetNLSAdviceParams(1, &text);
    EXPECT_TRUE(std::string(error.GetNLSMessage().GetText()).ends_with(text.GetText())) << advice;
  }
}

TEST_F(Catalog, FoldersAreSearchedInOrder) {
  write(folder_ / "b/Own_en.json", R"({"ERR_0007": {"diagnostic": "b"}})");
  write(folder_ / "c/Own_en.json", R"({"ERR_0007": {"diagnostic": "c"}})");
  write(folder_ / "d/Own_en.json", "{");
  const std::string path = between + between + (folder_ / "none") + between + (folder_ / "d") + between +
                           (folder_ / "c/") + between + (folder_ / "b");
  zortest::set_variable("ZOR_MESSAGE_CATALOG_PATH", path.c_str());
  const std::string reported = captured(stderr, [] { EXPECT_EQ(own(), "c"); });
  EXPECT_NE(reported.find(folder_ / "d/Own_en.json"), std::string::npos);
}

TEST_F(Catalog, ABrokenFileIsReportedOnceAndTakenAsAbsent) {
  const std::string deep(200000, '[');
  const std::string too_large = R"({"ERR_0007": {"diagnostic": "d"}})" + std::string(std::size_t{16} << 20, ' ');
  const std::string broken[] = {"",
                                "{",
                                "[]",
                                "7",
                                "null",
                                R"({"ERR_0007": {"diagnostic": "d"}} more)",
                                R"({"ERR_0007": "d"})",
                                R"({"ERR_0007": {"diagnostic": 7}})",
                                R"({"ERR_0007": {"diagnostic": ["d"]}})",
                                R"({"ERR_0007": {"diagnostic": "d"}, "ERR_0008": [1e999]})",
                                "{\"ERR_0007\": {\"diagnostic\": \"\xC3\x28\"}}",
                                R"({"ERR_0007": {"diagnostic": "\uD800"}})",
                                std::string("{\"\0\": {}", 8),
                                R"({"ERR_0007": {"diagnostic": "d", "note": [7]}})",
                                deep,
                                R"({"ERR_0007": )" + deep + std::string(deep.size(), ']') + "}",
                                too_large};
  for (const std::string& text : broken) {
    const ScratchFolder folder;
    zortest::set_variable("ZOR_MESSAGE_CATALOG_PATH", folder.path().c_str());
    write(folder / "Own_en.json", text);
    const std::string reported = captured(stderr, [&] {
      EXPECT_EQ(own(), "") << text.substr(0, 60);
      zortest::set_variable("ZOR_MESSAGE_CATALOG_PATH", (folder / "none") + between + folder.path());
      EXPECT_EQ(own(), "");
    });
    const std::size_t first = reported.find(folder / "Own_en.json");
    EXPECT_NE(first, std::string::npos) << text.substr(0, 60);
    EXPECT_EQ(reported.find(folder / "Own_en.json", first + 1), std::string::npos) << reported;
  }
}

TEST_F(Catalog, FieldsThatNobodyKnowsAreLeftOutAndTheLastOfTwoCounts) {
  write(folder_ / "Own_en.json", R"({"ERR_0007": {"diagnostic": "first", "advice": "of the first"},
      "ERR_0007": {"a": 7, "b": -7, "c": 0.5, "diagnostic": "second", "d": null, "e": true, "f": "text", "help_file": "h",
                   "diagnostic": "d"}})");
  EXPECT_EQ(own(), "d");
  const ZORResourceError error("ERR_0007", "Own");
  EXPECT_TRUE(error.GetNLSAdvice().IsEmpty());
  EXPECT_STREQ(error.GetNLSHelpFile().GetText(), "h");
}

TEST_F(Catalog, OnlyPlainFilesOfPlainNamesAreRead) {
  write(folder_ / "Other_en.json", R"({"ERR_0007": {"diagnostic": "other"}})");
  const std::string deeper = folder_ / "deeper";
  ASSERT_TRUE(std::filesystem::create_directories(deeper + "/Own_en.json"));
  zortest::make_named_pipe(deeper + "/Pipe_en.json");
  zortest::set_variable("ZOR_MESSAGE_CATALOG_PATH", deeper.c_str());
  const std::string absolute = folder_ / "Other";
  for (const char* name : {"../Other", absolute.c_str(), "Own", "Pipe", "", "\xFF"}) {
    EXPECT_EQ(captured(stderr, [&] { EXPECT_EQ(diagnostic(name, "ERR_0007"), "") << name; }), "");
  }
}

}  // namespace
