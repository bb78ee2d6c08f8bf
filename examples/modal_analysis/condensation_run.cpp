// SPDX-License-Identifier: MIT
#include "condensation_run.h"

#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "condensation/condensed_stiffness.h"
#include "condensation/retained_unknowns.h"
#include "failure_report.h"
#include "report/condensation_report.h"
#include "report/listing_report.h"
#include "report/output_folder.h"
#include "run_support.h"

namespace modal {
namespace {

CondensedStiffness condensed_stiffness(const Structure& structure, const RetainedUnknowns& retained,
                                       const Options& options) {
  try {
    return condense(structure.stiffness, retained.unknown);
  } catch (const PivotRefused& refused) {
    throw MatrixRefused(matrix_name(options), refused, true);
  }
}

}  // namespace

int run_condensation(const Options& options) {
  std::vector<PhaseTime> phases;
  const Structure structure = make_structure(options, phases);
  const RetainedUnknowns retained = read_retained_unknowns(options.condense, structure);
  OutputFolder folder(options.out);
  const std::string count = std::to_string(retained.unknown.size());
  print_head(structure, "the stiffness condensed to unknowns: " + count);

  const CondensedStiffness condensed =
      timed("condensation", phases, [&] { return condensed_stiffness(structure, retained, options); });
  const std::string file = "condensed.mtx";
  timed("writing", phases, [&] {
    folder.write(file, [&](std::ostream& out) { write_condensed_matrix(out, structure, retained, condensed); });
    folder.publish();
    return 0;
  });

  list_factor(condensed.factor);
  list_condensed(retained, condensed);
  std::cout << "Stiffness condensed to " << count << " of " << structure.stiffness.order << " unknowns\n";
  print_condensed(std::cout, retained, condensed);
  std::cout << "\nFactor: " << condensed.factor.factor_entries << " entries, largest front "
            << condensed.factor.largest_front << "\n\n";
  print_end(phases, file, options);
  return EXIT_SUCCESS;
}

}  // namespace modal
