// SPDX-License-Identifier: MIT
#include "report/number_text.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <numbers>

namespace modal {

double frequency(double eigenvalue) {
  return std::sqrt(eigenvalue) / (2 * std::numbers::pi);
}

std::string fixed_text(double value, int decimals) {
  const double unit = std::pow(10.0, -decimals);
  const double shown = std::fabs(value) < 0.5 * unit ? 0.0 : value;
  char text[400];  // the largest double has 309 digits before the point
  const auto end = std::to_chars(text, text + sizeof text, shown, std::chars_format::fixed, decimals).ptr;
  return {text, end};
}

std::string frequency_text(double hertz) {
  constexpr int most_decimals = 5;
  constexpr int most_digits = 9;
  int decimals = most_decimals;
  for (double limit = 1e4; hertz >= limit && decimals > 0; limit *= 10) {
    --decimals;
  }
  static_assert(most_digits - most_decimals == 4, "the limit above is 10 to the digits before the point");
  return fixed_text(hertz, decimals);
}

std::string short_text(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", value);
  return text;
}

std::string bound_text(double value) {
  constexpr int lowest_power = -7;
  for (int power = lowest_power; power <= 0; ++power) {
    if (value < std::pow(10.0, power)) {
      char text[16];
      std::snprintf(text, sizeof text, "< 1e%+03d", power);
      return text;
    }
  }
  return "1 or more";
}

}  // namespace modal
