// SPDX-License-Identifier: MIT
// What the command line asks for.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace component {

inline constexpr int usual_modes = 6;
inline constexpr int usual_part_modes = 40;

struct Options {
  int mesh_x = 16;  // elements of the built-in model along and across its axis
  int mesh_y = 8;
  int parts = 1;                       // of the built-in model, or as many as there are files
  std::vector<std::string> mesh_file;  // one a part; empty for the built-in model
  int modes = usual_modes;
  int part_modes = usual_part_modes;  // fixed-interface modes a part
  std::string out;                    // folder for the modes; empty where none are written
  int threads = 1;                    // a rank
  bool help = false;
};

// ranks: as many parts where the command line names no number. Throws modal::InputError for a command line that cannot
// be carried out. tell: whether this rank prints the help that was asked for.
Options parse_options(int argc, const char* const* argv, int ranks, bool tell);

}  // namespace component
