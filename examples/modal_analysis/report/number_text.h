// SPDX-License-Identifier: MIT
// Numbers as the report prints them. Every text is made so that rounding noise does not reach it: the same digits at
// every instruction-set level and thread count.
#pragma once

#include <string>

namespace modal {

// Hz, for an eigenvalue in (rad/s)².
double frequency(double eigenvalue);

// With a fixed number of decimals; a value that rounds to zero has no sign.
std::string fixed_text(double value, int decimals);

// Five decimals, fewer where that would be more than nine significant digits.
std::string frequency_text(double hertz);

// Six significant digits.
std::string short_text(double value);

// The smallest power of ten above the value, "< 1e-07" being the lowest that is told.
std::string bound_text(double value);

}  // namespace modal
