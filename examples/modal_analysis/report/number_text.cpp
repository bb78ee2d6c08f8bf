// SPDX-License-Identifier: MIT
#include "report/number_text.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <numbers>

namespace modal {

namespace {

// 10^-decimals, rounded once: the power function of some C runtimes is a bit off.
double tenth_power(int decimals) {
  constexpr double powers[] = {1e0, 1e-1, 1e-2, 1e-3, 1e-4, 1e-5, 1e-6, 1e-7, 1e-8, 1e-9};
  return powers[decimals];
}

}  // namespace

double frequency(double eigenvalue) {
  return std::sqrt(eigenvalue) / (2 * std::numbers::pi);
}

std::string fixed_text(double value, int decimals) {
  const double unit = tenth_power(decimals);
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
    if (value < tenth_power(-power)) {
      char text[16];
      std::snprintf(text, sizeof text, "< 1e%+03d", power);
      return text;
    }
  }
  return "1 or more";
}

}  // namespace modal
