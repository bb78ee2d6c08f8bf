// SPDX-License-Identifier: MIT
// What the command line asks for.
#pragma once

#include <optional>
#include <string>

namespace modal {

inline constexpr int usual_modes = 6;  // fewer where there are fewer unknowns

struct Options {
  int mesh_x = 16;  // elements of the built-in model along and across its axis
  int mesh_y = 8;
  int parts = 1;          // of the built-in model, meshed on their own
  std::string mesh_file;  // path; empty for the built-in model
  std::string stiffness;  // path; empty for the built-in model
  std::string mass;       // path; empty for the identity
  std::string condense;   // path of the retained unknowns; empty for a modal analysis
  std::optional<int> modes;
  std::string out = "modes-out";  // folder
  std::optional<int> threads;
  bool help = false;  // the help has been printed, nothing else is wanted
};

// Throws InputError for a command line that cannot be carried out.
Options parse_options(int argc, const char* const* argv);

}  // namespace modal
