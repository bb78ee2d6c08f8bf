// SPDX-License-Identifier: MIT
// The modes as files for other programs.
#pragma once

#include <array>
#include <cstddef>
#include <ostream>
#include <vector>

#include "modes/modal_solver.h"
#include "structure/structure.h"

namespace modal {

// Displacement of every node in mode k (from 0), scaled so that the longest vector has length 1; fixed nodes rest.
Array<std::array<double, 2>> unit_displacement(const Structure& structure, const ModalResult& result, std::size_t k);

// Legacy VTK, ASCII: the mesh as quadratic quadrilaterals and one vector field a mode, in unit displacements.
void write_vtk(std::ostream& out, const Structure& structure, const ModalResult& result);

// Matrix Market, array: the M-normalised modes as columns, to the last bit.
void write_mode_matrix(std::ostream& out, const Structure& structure, const ModalResult& result);

}  // namespace modal
