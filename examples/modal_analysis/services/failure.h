// SPDX-License-Identifier: MIT
// The messages of the program's own catalog, "ModalAnalysisError", which go into the listing.
#pragma once

#include "ZORTavErrorTools.h"

namespace modal {

enum class Message : int {
  bad_line = 101,           // file, line, fault
  bad_input = 102,          // fault
  pivot_refused = 103,      // equation, status, pivot or ratio, matrix
  shift_refused = 104,      // the same and the shift
  not_converged = 105,      // what was wrong
  modes_missed = 106,       // eigenvalues counted, found, frequency
  not_enough_memory = 107,  // which array
  unexpected = 108,         // what was wrong
  retained_refused = 109,   // as pivot_refused, in the part that is condensed out
};

// Integers, reals and texts, each kind in its order.
template <class... Parameters>
void raise(Message message, const Parameters&... parameters) {
  ZORTavErrorTools::CreateError(static_cast<int>(message), "ModalAnalysisError", ZORTavTypeEncapError(parameters)...);
}

}  // namespace modal
