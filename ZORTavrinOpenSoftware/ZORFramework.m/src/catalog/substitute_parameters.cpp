// SPDX-License-Identifier: MIT
#include "substitute_parameters.h"

#include <cstddef>

namespace zortav {
namespace {

constexpr std::string_view mark = "/p";
constexpr int last_parameter = 25;

// Takes the longest number from 1 to 25 off the front of the digits; 0, and takes nothing, when there is none.
int take_number(std::string_view& digits) {
  int number = 0;
  std::size_t taken = 0;
  for (; taken < digits.size() && digits[taken] >= '0' && digits[taken] <= '9'; ++taken) {
    const int longer = 10 * number + (digits[taken] - '0');
    if (longer == 0 || longer > last_parameter) {
      break;
    }
    number = longer;
  }
  digits.remove_prefix(taken);
  return number;
}

}  // namespace

std::string substitute_parameters(std::string_view text, const ZORListValZORUnicodeString& parameters) {
  std::string result;
  for (;;) {
    const std::size_t at = text.find(mark);
    result += text.substr(0, at);
    if (at == std::string_view::npos) {
      return result;
    }
    text.remove_prefix(at + mark.size());
    const int number = take_number(text);
    if (number > 0) {
      result += parameters[number].GetText();
    } else {
      result += mark;
    }
  }
}

}  // namespace zortav
