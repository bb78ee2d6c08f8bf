// SPDX-License-Identifier: MIT
#pragma once

#include <ostream>

#include "condensation/condensed_stiffness.h"
#include "condensation/retained_unknowns.h"
#include "structure/structure.h"

namespace modal {

// The lower triangle with the names of its unknowns; of more than a page's width it says where the matrix is.
void print_condensed(std::ostream& out, const RetainedUnknowns& retained, const CondensedStiffness& condensed);

// Matrix Market, the lower triangle of a symmetric array.
void write_condensed_matrix(std::ostream& out, const Structure& structure, const RetainedUnknowns& retained,
                            const CondensedStiffness& condensed);

}  // namespace modal
