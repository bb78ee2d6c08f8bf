// SPDX-License-Identifier: MIT
// The results on the terminal.
#pragma once

#include <ostream>
#include <vector>

#include "modes/modal_solver.h"
#include "structure/structure.h"

namespace modal {

// One line a mode: frequency, the published value and the deviation from it where there is one, residual.
void print_mode_table(std::ostream& out, const Structure& structure, const ModalResult& result);

// Whether every mode below the last one was found: the count of negative pivots of K − σ·M against the modes found.
bool no_mode_missed(const ModalResult& result);
void print_missed_check(std::ostream& out, const ModalResult& result);

void print_phase_times(std::ostream& out, const std::vector<PhaseTime>& phases);

}  // namespace modal
