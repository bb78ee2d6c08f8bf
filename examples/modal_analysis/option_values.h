// SPDX-License-Identifier: MIT
// Values of options. All throw InputError with the option's name and what was expected.
#pragma once

#include <string>

namespace modal {

inline constexpr int most_threads = 1024;

// 1 .. highest
int whole_number(const std::string& option, const std::string& text, int highest);

// Of the option --mesh: "16x8", each count 1 .. largest_mesh_count.
void parse_mesh(const std::string& text, int& nx, int& ny);

}  // namespace modal
