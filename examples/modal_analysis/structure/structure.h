// SPDX-License-Identifier: MIT
// A structure to be analysed: its matrices, and what is known beside them for the report.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "services/array_memory.h"
#include "structure/symmetric_matrix.h"

namespace modal {

// A plane mesh of eight-node quadrilaterals: corners counter-clockwise, then the mid-side node after each corner.
struct Mesh {
  Array<std::array<double, 2>> node;            // metres
  Array<std::array<std::int32_t, 8>> element;   // node numbers from 0
  Array<std::array<std::int32_t, 2>> equation;  // per node and direction: unknown from 0, or -1 when fixed
  Array<std::int64_t> tag;  // numbers of the nodes in their file; empty where they are counted from 1
};

struct Structure {
  std::string title;
  SymmetricMatrix stiffness;                // N/m for the built-in model
  SymmetricMatrix mass;                     // kg for the built-in model
  Mesh mesh;                                // empty when the matrices came from files
  std::vector<double> published_frequency;  // Hz, mode by mode; may be shorter than the modes asked for
};

}  // namespace modal
