// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <string>

#include "structure/structure.h"

namespace component {

// What went wrong, as one line. mesh: of the part that was worked on, null where it was the joined structure.
std::string failure_text(const std::exception& error, const modal::Mesh* mesh);

// On standard error, in one piece: "component_modes: rank 2: text". Without a rank where all ranks say the same.
void print_failure(int rank, const std::string& text);
void print_failure(const std::string& text);

}  // namespace component
