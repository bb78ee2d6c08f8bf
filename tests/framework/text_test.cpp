// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <regex>
#include <string>
#include <utility>

#include "ZORCollections.h"
#include "ZORTime.h"
#include "ZORUnicodeString.h"
#include "ZORUuid.h"

namespace {

std::wstring wide(const char* utf8) {
  const ZORUnicodeString text = utf8;
  std::wstring result(text.ToWide(nullptr, 0) + 1, L'#');
  EXPECT_EQ(text.ToWide(result.data(), result.size()), result.size() - 1);
  EXPECT_EQ(result.back(), L'\0');
  result.pop_back();
  return result;
}

TEST(UnicodeString, WideTextAndBack) {
  const wchar_t* const texts[] = {L"", L"A\x7F", L"\x80\x7FF", L"\x800\xD7FF\xE000\xFFFD\xFFFF",
                                  L"\U00010000\U0010FFFF"};
  const char* const utf8[] = {"", "A\x7F", "\xC2\x80\xDF\xBF",
                              "\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBD\xEF\xBF\xBF",
                              "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"};
  for (std::size_t i = 0; i < std::size(texts); ++i) {
    EXPECT_STREQ(ZORUnicodeString::FromWide(texts[i]).GetText(), utf8[i]);
    EXPECT_EQ(wide(utf8[i]), texts[i]);
  }
  // The last is no number of a character; in 16 bits, where there is none, half a pair stands for it.
  constexpr auto beyond = static_cast<wchar_t>(sizeof(wchar_t) > 2 ? 0x110000 : 0xD900);
  const wchar_t no_characters[] = {L'a', static_cast<wchar_t>(0xD800), beyond, L'b', L'\0'};
  EXPECT_STREQ(ZORUnicodeString::FromWide(no_characters).GetText(),
               "a\xEF\xBF\xBD\xEF\xBF\xBD"
               "b");
  EXPECT_TRUE(ZORUnicodeString::FromWide(nullptr).IsEmpty());
}

TEST(UnicodeString, BytesThatAreNoTextAreKeptAndReplacedOnTheWayToWide) {
  const std::pair<const char*, int> invalid[] = {
      {"\x80", 1},         {"\xC3", 1},     {"\xC0\xAF", 2},         {"\xE2\x82", 2}, {"\xE0\x9F\xBF", 3},
      {"\xED\xA0\x80", 3}, {"\xF0\x80", 2}, {"\xF4\x90\x80\x80", 4}, {"\xFF", 1},     {"\xF0\x9F\x98", 3}};
  for (const auto& [bytes, replaced] : invalid) {
    EXPECT_STREQ(ZORUnicodeString(bytes).GetText(), bytes);
    EXPECT_EQ(wide((std::string(bytes) + "x").c_str()),
              std::wstring(static_cast<std::size_t>(replaced), 0xFFFD) + L"x");
  }
}

TEST(UnicodeString, AWideBufferIsNeverOverrun) {
  wchar_t buffer[] = L"########";
  EXPECT_EQ(ZORUnicodeString("\xC3\xA9t\xC3\xA9s").ToWide(buffer, 3), 4U);
  EXPECT_EQ(std::wstring(buffer, 8), std::wstring(L"\xE9t\0#####", 8));
}

TEST(UnicodeString, IsAValue) {
  ZORUnicodeString a = "ab";
  ZORUnicodeString b = a;
  b.Append(b);
  a = *&a;
  EXPECT_TRUE(a == "ab" && b == "abab" && a + b == "ababab" && a != b);
  a = std::move(b);
  EXPECT_TRUE(a == "abab" && a.GetLength() == 4);
  EXPECT_TRUE(a != "Abab" && a != "aba" && ZORUnicodeString("\xC3\xA9") != "e\xCC\x81");
  const ZORUnicodeString none(static_cast<const char*>(nullptr));
  EXPECT_TRUE(none.IsEmpty() && none == "" && none == ZORUnicodeString() && *none.GetText() == '\0');
}

TEST(Collections, CountFromOneAndAnswerBeyondTheirEnds) {
  ZORListValZORUnicodeString texts;
  ZORRawColldouble reals;
  texts.Append("first");
  texts.Append(texts[1]);
  reals.Append(0.5);
  EXPECT_TRUE(texts.Size() == 2 && texts[2] == "first" && texts[0].IsEmpty() && texts[3].IsEmpty());
  EXPECT_TRUE(reals.Size() == 1 && reals[1] == 0.5 && reals[2] == 0 && reals[-1] == 0);
}

TEST(Uuid, EachIsNewAndHasItsTextForm) {
  const ZORUuid a;
  const ZORUuid b;
  EXPECT_TRUE(a != b && a == ZORUuid(a));
  const std::string text = a.ConvertToString().GetText();
  EXPECT_TRUE(std::regex_match(text, std::regex("[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}"))) << text;
  EXPECT_NE(text, b.ConvertToString().GetText());
}

TEST(Time, ATextThatIsTooLongIsEmpty) {
  EXPECT_STREQ(ZORTime().ConvertToString("%%j").GetText(), "%j");
  EXPECT_TRUE(ZORTime().ConvertToString(std::string(256, 'x').c_str()).IsEmpty());
}

TEST(Sequence, IsCopiedByValueOrTheProcessStops) {
  struct Scarce {
    Scarce() = default;
    Scarce(const Scarce& other) : copies_left(other.copies_left - 1) {
      if (copies_left < 0) {
        throw std::bad_alloc();
      }
    }
    int copies_left = 1;
  };
  ZORSequence<Scarce> one;
  one.Append({});
  EXPECT_EXIT(ZORSequence<Scarce>{one}, testing::ExitedWithCode(1), "no memory for a value");
  ZORSequence<Scarce> other;
  EXPECT_EXIT(other = one, testing::ExitedWithCode(1), "no memory for a value");
  other = std::move(one);
  EXPECT_EQ(other.Size(), 1);

  ZORRawCollint numbers;
  numbers.Append(3);
  ZORRawCollint copy = numbers;
  copy.Append(4);
  numbers = copy;
  copy.RemoveAll();
  EXPECT_TRUE(numbers.Size() == 2 && numbers[2] == 4 && copy.Size() == 0);
}

}  // namespace
