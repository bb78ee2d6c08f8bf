// SPDX-License-Identifier: MIT
#include "option_values.h"

#include <charconv>

#include "structure/input_error.h"
#include "structure/tapered_membrane.h"

namespace modal {

int whole_number(const std::string& option, const std::string& text, int highest) {
  int number = 0;
  const char* const end = text.data() + text.size();
  const auto [at, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || at != end || number < 1 || number > highest) {
    throw InputError(option + " " + text + ": expected a whole number 1 .. " + std::to_string(highest));
  }
  return number;
}

void parse_mesh(const std::string& text, int& nx, int& ny) {
  const char* const end = text.data() + text.size();
  const auto x = std::from_chars(text.data(), end, nx);
  const bool cross = x.ec == std::errc() && x.ptr != end && *x.ptr == 'x';
  const auto y = cross ? std::from_chars(x.ptr + 1, end, ny) : x;
  if (!cross || y.ec != std::errc() || y.ptr != end) {
    throw InputError("--mesh " + text + ": expected two counts, such as 16x8");
  }
  for (const int count : {nx, ny}) {
    if (count < 1 || count > largest_mesh_count) {
      throw InputError("--mesh " + text + ": each count must be 1 .. " + std::to_string(largest_mesh_count));
    }
  }
}

}  // namespace modal
