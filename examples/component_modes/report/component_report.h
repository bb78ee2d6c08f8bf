// SPDX-License-Identifier: MIT
// What the root prints.
#pragma once

#include <cstdint>
#include <ostream>
#include <span>
#include <string>
#include <vector>

#include "modes/modal_solver.h"

namespace component {

struct ModelFigures {
  std::string title;
  int parts;
  int ranks;
  int threads;  // a rank
  double unknowns;
  std::int32_t joint_unknowns;
};
void print_model(std::ostream& out, const ModelFigures& model);

// Of one rank.
struct RankFigures {
  double parts;
  double unknowns;    // of its parts, interfaces included
  double peak_bytes;  // of the arrays
  double bytes_sent;
};

struct ResultFigures {
  const modal::ModalResult& result;
  const std::vector<double>& published_frequency;
  std::int32_t reduced_unknowns;
  int part_modes;            // the most that a part has
  double lowest_part_limit;  // the lowest of the parts' highest fixed-interface eigenvalues
  bool part_modes_missed;    // in some part
};
void print_modes(std::ostream& out, const ResultFigures& figures);
void print_ranks(std::ostream& out, std::span<const RankFigures> ranks);

}  // namespace component
