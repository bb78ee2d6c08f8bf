// SPDX-License-Identifier: MIT
// A picture of the modes to look at.
#pragma once

#include <ostream>

#include "modes/modal_solver.h"
#include "structure/structure.h"

namespace modal {

// One panel a mode: the deformed mesh, coloured by the length of the displacement, over the outline at rest.
void write_svg(std::ostream& out, const Structure& structure, const ModalResult& result);

}  // namespace modal
