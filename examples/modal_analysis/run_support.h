// SPDX-License-Identifier: MIT
// What every run of the program does around its own work.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ZORTavTimer.h"
#include "modes/modal_solver.h"
#include "options.h"
#include "structure/structure.h"

namespace modal {

// Runs a piece of work and appends how long it took.
template <class Work>
auto timed(const char* phase, std::vector<PhaseTime>& phases, Work work) {
  ZORTavTimer timer;
  timer.Start();
  auto result = work();
  timer.Stop();
  phases.push_back({phase, timer.GetElapsed(), timer.GetCPU()});
  return result;
}

Structure make_structure(const Options& options, std::vector<PhaseTime>& phases);

// Where the stiffness comes from, for messages.
std::string matrix_name(const Options& options);

// The model on the terminal, and in the listing with the task.
void print_head(const Structure& structure, const std::string& task);
// Times, memory, files and log; the listing gets the same. Throws InputError when standard output cannot be written.
void print_end(const std::vector<PhaseTime>& phases, const std::string& files, const Options& options);

}  // namespace modal
