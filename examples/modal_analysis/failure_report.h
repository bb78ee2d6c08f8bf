// SPDX-License-Identifier: MIT
// How a run that fails is reported: one line on standard error, and the catalog's message in the listing.
#pragma once

#include <exception>
#include <string>

#include "modes/modal_solver.h"
#include "structure/input_error.h"

namespace modal {

// A matrix could not be factored.
struct MatrixRefused : InputError {
  // condensing: the matrix is the part of K that is condensed out.
  MatrixRefused(std::string matrix_, const PivotRefused& pivot_, bool condensing_ = false);
  std::string matrix;
  PivotRefused pivot;
  bool condensing;
};

// Writes both; returns the exit status.
int report_failure(const std::exception& error);
int report_missed_modes(const ModalResult& result);

}  // namespace modal
