// SPDX-License-Identifier: MIT
// What a solver engineer reads in the solver log after a run: what was solved, how, how fast, and how well.
#pragma once

#include <string>
#include <vector>

#include "condensation/condensed_stiffness.h"
#include "condensation/retained_unknowns.h"
#include "modes/modal_solver.h"
#include "structure/structure.h"

namespace modal {

// task: what the run is to find. team: threads of the OpenMP team.
void list_model(const Structure& structure, const std::string& task, int team);
void list_factor(const FactorSummary& summary);
void list_modes(const ModalResult& result);
void list_condensed(const RetainedUnknowns& retained, const CondensedStiffness& condensed);
void list_phases(const std::vector<PhaseTime>& phases);
// The last lines: the peak of the arrays' memory and the files written.
void list_end(const std::string& files);

// Writes factor and iterations into the listing while they come, so that a run that fails has told how far it came, and
// hands everything on.
class ListingProgress : public Progress {
 public:
  explicit ListingProgress(Progress& next) : next_(next) {}
  void step(const char* phase, double done, double total) override { next_.step(phase, done, total); }
  void factored(const FactorSummary& summary) override;
  void iterated(const IterationState& state) override;

 private:
  Progress& next_;
  bool titled_ = false;
};

}  // namespace modal
