// SPDX-License-Identifier: MIT
// The lowest modes of free vibration, K·x = λ·M·x: a whole analysis as a client of the library.
#include <omp.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "ZORTAVMathKernel.h"
#include "ZORTavTimer.h"
#include "modes/modal_solver.h"
#include "options.h"
#include "report/mode_files.h"
#include "report/mode_svg.h"
#include "report/mode_table.h"
#include "report/number_text.h"
#include "report/output_folder.h"
#include "report/progress_bar.h"
#include "structure/input_error.h"
#include "structure/matrix_market.h"
#include "structure/tapered_membrane.h"

namespace {

using modal::InputError;
using modal::ModalResult;
using modal::Options;
using modal::PhaseTime;
using modal::Structure;

// The library decides once, at its first call, from the environment how it runs; the environment comes first.
void start_library(const std::optional<int>& threads) {
  if (threads) {
    static std::string setting;  // the environment keeps pointing at it
    setting = "OMP_NUM_THREADS=" + std::to_string(*threads);
    putenv(setting.data());
    omp_set_num_threads(*threads);
  }
  std::int32_t decision = 0;
  ehaldb(&decision);
}

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

Structure make_structure(const Options& options, std::vector<PhaseTime>& phases) {
  if (!options.mesh_file.empty()) {
    return timed("assembly", phases, [&] { return modal::gmsh_membrane(options.mesh_file); });
  }
  if (options.stiffness.empty()) {
    return timed("assembly", phases,
                 [&] { return modal::tapered_membrane(options.mesh_x, options.mesh_y, options.parts); });
  }
  return timed("reading", phases, [&] { return modal::read_structure(options.stiffness, options.mass); });
}

void print_head(const Structure& structure) {
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

// The names of the files written.
std::string write_files(modal::OutputFolder& folder, const Structure& structure, const ModalResult& result) {
  std::string names = "modes.mtx";
  if (structure.mesh.element.empty()) {
    folder.write(names, [&](std::ostream& out) { modal::write_mode_matrix(out, structure, result); });
  } else {
    folder.write("modes.vtk", [&](std::ostream& out) { modal::write_vtk(out, structure, result); });
    folder.write("modes.svg", [&](std::ostream& out) { modal::write_svg(out, structure, result); });
    names = "modes.vtk and modes.svg";
  }
  folder.publish();
  return names;
}

std::string refusal_text(const Options& options, const modal::PivotRefused& refused) {
  constexpr int ratio_too_small = 34;
  const std::string matrix = !options.mesh_file.empty()  ? options.mesh_file
                             : options.stiffness.empty() ? "the built-in model"
                                                         : options.stiffness;
  return matrix + ": equation " + std::to_string(refused.equation) + ": pivot status " +
         std::to_string(refused.status) + ", pivot " + modal::short_text(refused.value) +
         (refused.status == ratio_too_small ? " times its initial diagonal: " : ": ") +
         (refused.shift == 0.0 ? "the matrix is singular or not positive definite"
                               : "K - s*M, s = " + modal::short_text(refused.shift) +
                                     ", cannot be factored to check that no mode was missed");
}

ModalResult solve(const Structure& structure, const Options& options, int modes) {
  const auto start = std::chrono::steady_clock::now();
  modal::ProgressBar progress(std::cerr, isatty(fileno(stderr)) != 0, [start] {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  });
  try {
    return modal::find_lowest_modes(structure.stiffness, structure.mass, modes, progress);
  } catch (const modal::PivotRefused& refused) {
    throw InputError(refusal_text(options, refused));
  }
}

// The exit status.
int run(const Options& options) {
  start_library(options.threads);
  std::vector<PhaseTime> phases;
  const Structure structure = make_structure(options, phases);
  const int modes = options.modes.value_or(std::min(modal::usual_modes, structure.stiffness.order));
  if (modes > structure.stiffness.order) {
    throw InputError("--modes " + std::to_string(modes) + ": there are only " +
                     std::to_string(structure.stiffness.order) + " unknowns");
  }
  modal::OutputFolder folder(options.out);  // before the long work, so that a bad folder is told at once
  print_head(structure);

  const ModalResult result = solve(structure, options, modes);
  phases.insert(phases.end(), result.phases.begin(), result.phases.end());
  const std::string files = timed("writing", phases, [&] { return write_files(folder, structure, result); });

  modal::print_mode_table(std::cout, structure, result);
  std::cout << '\n';
  modal::print_missed_check(std::cout, result);
  std::cout << "Factor: " << result.factor_entries << " entries, largest front " << result.largest_front
            << "; iterations: " << result.iterations << "\n\n";
  modal::print_phase_times(std::cout, phases);
  std::cout << "\nWrote " << files << " to " << options.out << '\n' << std::flush;
  if (!std::cout) {
    throw InputError("standard output cannot be written");
  }
  if (!modal::no_mode_missed(result)) {
    std::cerr << "modal_analysis: modes were missed: " << result.below_shift << " eigenvalues below the shift, "
              << result.found_below_shift << " found\n";
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}

int fail(std::string text) {
  // File names and options may hold anything; the message stays one line.
  std::replace_if(
      text.begin(), text.end(), [](unsigned char c) { return c < ' '; }, '?');
  std::cerr << "modal_analysis: " << text << '\n';
  return EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const Options options = modal::parse_options(argc, argv);
    return options.help ? EXIT_SUCCESS : run(options);
  } catch (const std::bad_alloc&) {
    return fail("not enough memory for a problem of this size");
  } catch (const std::exception& error) {
    return fail(error.what());
  }
}
