// SPDX-License-Identifier: MIT
// Symmetric matrices from Matrix Market files.
#pragma once

#include <cstdint>
#include <string>

#include "structure/structure.h"
#include "structure/symmetric_matrix.h"

namespace modal {

// Reads a coordinate or array file, real or integer, symmetric or general with equal halves. Throws InputError, with
// the line where there is one, for a file that cannot be used.
//
// order: what the matrix must have; 0 takes any order, but then wants at least one entry a row.
SymmetricMatrix read_symmetric_matrix(const std::string& path, std::int32_t order);

SymmetricMatrix identity_matrix(std::int32_t order);

// K and M from files; an empty mass path stands for the identity.
Structure read_structure(const std::string& stiffness_path, const std::string& mass_path);

}  // namespace modal
