// SPDX-License-Identifier: MIT
#include "modal_run.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "failure_report.h"
#include "report/listing_report.h"
#include "report/mode_files.h"
#include "report/mode_svg.h"
#include "report/mode_table.h"
#include "report/output_folder.h"
#include "report/progress_bar.h"
#include "run_support.h"

namespace modal {
namespace {

// The names of the files written.
std::string write_files(OutputFolder& folder, const Structure& structure, const ModalResult& result) {
  std::string names = "modes.mtx";
  if (structure.mesh.element.empty()) {
    folder.write(names, [&](std::ostream& out) { write_mode_matrix(out, structure, result); });
  } else {
    folder.write("modes.vtk", [&](std::ostream& out) { write_vtk(out, structure, result); });
    folder.write("modes.svg", [&](std::ostream& out) { write_svg(out, structure, result); });
    names = "modes.vtk and modes.svg";
  }
  folder.publish();
  return names;
}

ModalResult solve(const Structure& structure, const Options& options, int modes) {
  const auto start = std::chrono::steady_clock::now();
  ProgressBar bar(std::cerr, isatty(fileno(stderr)) != 0,
                  [start] { return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(); });
  ListingProgress progress(bar);
  try {
    return find_lowest_modes(structure.stiffness, structure.mass, modes, progress);
  } catch (const PivotRefused& refused) {
    throw MatrixRefused(matrix_name(options), refused);
  }
}

}  // namespace

int run_modal_analysis(const Options& options) {
  std::vector<PhaseTime> phases;
  const Structure structure = make_structure(options, phases);
  const int modes = options.modes.value_or(std::min(usual_modes, structure.stiffness.order));
  if (modes > structure.stiffness.order) {
    throw InputError("--modes " + std::to_string(modes) + ": there are only " +
                     std::to_string(structure.stiffness.order) + " unknowns");
  }
  OutputFolder folder(options.out);  // before the long work, so that a bad folder is told at once
  print_head(structure, "the lowest modes of K*x = lambda*M*x: " + std::to_string(modes));

  const ModalResult result = solve(structure, options, modes);
  phases.insert(phases.end(), result.phases.begin(), result.phases.end());
  const std::string files = timed("writing", phases, [&] { return write_files(folder, structure, result); });

  list_modes(result);
  print_mode_table(std::cout, structure, result);
  std::cout << '\n';
  print_missed_check(std::cout, result);
  std::cout << "Factor: " << result.factor.factor_entries << " entries, largest front " << result.factor.largest_front
            << "; iterations: " << result.iterations << "\n\n";
  print_end(phases, files, options);
  return no_mode_missed(result) ? EXIT_SUCCESS : report_missed_modes(result);
}

}  // namespace modal
