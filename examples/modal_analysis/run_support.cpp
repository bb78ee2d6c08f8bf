// SPDX-License-Identifier: MIT
#include "run_support.h"

#include <omp.h>

#include <iostream>

#include "ZORTAVMathKernel.h"
#include "report/listing_report.h"
#include "report/mode_table.h"
#include "report/number_text.h"
#include "services/array_memory.h"
#include "services/listing.h"
#include "structure/input_error.h"
#include "structure/matrix_market.h"
#include "structure/tapered_membrane.h"

namespace modal {

Structure make_structure(const Options& options, std::vector<PhaseTime>& phases) {
  if (!options.mesh_file.empty()) {
    return timed("assembly", phases, [&] { return gmsh_membrane(options.mesh_file); });
  }
  if (options.stiffness.empty()) {
    return timed("assembly", phases, [&] { return tapered_membrane(options.mesh_x, options.mesh_y, options.parts); });
  }
  return timed("reading", phases, [&] { return read_structure(options.stiffness, options.mass); });
}

std::string matrix_name(const Options& options) {
  return !options.mesh_file.empty()  ? options.mesh_file
         : options.stiffness.empty() ? "the built-in model"
                                     : options.stiffness;
}

void print_head(const Structure& structure, const std::string& task) {
  list_model(structure, task, omp_get_max_threads());
  std::int32_t active = 0;
  std::int32_t highest = 0;
  std::int32_t reason = 0;
  ehgetisa(&active, &highest, &reason);
  std::cout << structure.title << "\n  unknowns         " << structure.stiffness.order << "\n  entries          "
            << structure.stiffness.entries() << " in K, " << structure.mass.entries()
            << " in M (lower triangles)\n  instruction set  " << ehisanm(&active) << "\n  threads          "
            << omp_get_max_threads() << "\n\n"
            << std::flush;
}

void print_end(const std::vector<PhaseTime>& phases, const std::string& files, const Options& options) {
  constexpr double megabyte = 1e6;
  const std::string written = files + " to " + options.out;
  list_phases(phases);
  list_end(written);
  print_phase_times(std::cout, phases);
  std::cout << "\nPeak memory of the arrays: " << fixed_text(ArrayMemory::instance().peak_bytes() / megabyte, 1)
            << " MB\nWrote " << written << '\n';
  if (const std::string log = listing_path(); !log.empty()) {
    std::cout << "Listing: " << log << '\n';
  }
  std::cout << std::flush;
  if (!std::cout) {
    throw InputError("standard output cannot be written");
  }
}

}  // namespace modal
