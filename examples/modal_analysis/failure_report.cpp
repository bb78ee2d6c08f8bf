// SPDX-License-Identifier: MIT
#include "failure_report.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <new>
#include <utility>

#include "report/number_text.h"
#include "services/array_memory.h"
#include "services/failure.h"

namespace modal {
namespace {

std::string refusal_text(const std::string& matrix, const PivotRefused& refused, bool condensing) {
  constexpr int ratio_too_small = 34;
  return matrix + ": equation " + std::to_string(refused.equation) + ": pivot status " +
         std::to_string(refused.status) + ", pivot " + short_text(refused.value) +
         (refused.status == ratio_too_small ? " times its initial diagonal: " : ": ") +
         (condensing ? "with the retained unknowns held the matrix is singular or not positive definite"
          : refused.shift == 0.0
              ? "the matrix is singular or not positive definite"
              : "K - s*M, s = " + short_text(refused.shift) + ", cannot be factored to check that no mode was missed");
}

int print_line(std::string text) {
  // File names and options may hold anything; the message stays one line.
  std::replace_if(
      text.begin(), text.end(), [](unsigned char c) { return c < ' '; }, '?');
  std::cerr << "modal_analysis: " << text << '\n';
  return EXIT_FAILURE;
}

void raise_message(const std::exception& error) {
  if (const auto* refused = dynamic_cast<const MatrixRefused*>(&error)) {
    const PivotRefused& pivot = refused->pivot;
    if (pivot.shift != 0.0) {
      raise(Message::shift_refused, pivot.equation, pivot.status, pivot.value, pivot.shift, refused->matrix.c_str());
    } else {
      raise(refused->condensing ? Message::retained_refused : Message::pivot_refused, pivot.equation, pivot.status,
            pivot.value, refused->matrix.c_str());
    }
  } else if (const auto* input = dynamic_cast<const InputError*>(&error)) {
    if (input->file.empty()) {
      raise(Message::bad_input, input->what());
    } else {
      raise(Message::bad_line, static_cast<int>(input->line), input->file.c_str(), input->fault.c_str());
    }
  } else if (dynamic_cast<const NotConverged*>(&error) != nullptr) {
    raise(Message::not_converged, error.what());
  } else {
    raise(Message::unexpected, error.what());
  }
}

}  // namespace

MatrixRefused::MatrixRefused(std::string matrix_, const PivotRefused& pivot_, bool condensing_)
    : InputError(refusal_text(matrix_, pivot_, condensing_)),
      matrix(std::move(matrix_)),
      pivot(pivot_),
      condensing(condensing_) {}

int report_failure(const std::exception& error) {
  if (dynamic_cast<const std::bad_alloc*>(&error) == nullptr) {
    raise_message(error);
    return print_line(error.what());
  }
  const auto* array = dynamic_cast<const ArrayRefused*>(&error);
  const std::string text = std::string("not enough memory for a problem of this size") +
                           (array != nullptr ? std::string(": ") + array->what() : "");
  raise(Message::not_enough_memory, text.c_str());
  return print_line(text);
}

int report_missed_modes(const ModalResult& result) {
  raise(Message::modes_missed, result.below_shift, result.found_below_shift, frequency(std::max(result.shift, 0.0)));
  return print_line("modes were missed: " + std::to_string(result.below_shift) + " eigenvalues below the shift, " +
                    std::to_string(result.found_below_shift) + " found");
}

}  // namespace modal
