// SPDX-License-Identifier: MIT
#include "options.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <iostream>
#include <limits>

#include "structure/input_error.h"
#include "structure/tapered_membrane.h"

namespace modal {
namespace {

constexpr int most_threads = 1024;

// "16x8"
void parse_mesh(const std::string& text, Options& options) {
  const char* const end = text.data() + text.size();
  const auto x = std::from_chars(text.data(), end, options.mesh_x);
  const bool cross = x.ec == std::errc() && x.ptr != end && *x.ptr == 'x';
  const auto y = cross ? std::from_chars(x.ptr + 1, end, options.mesh_y) : x;
  if (!cross || y.ec != std::errc() || y.ptr != end) {
    throw InputError("--mesh " + text + ": expected two counts, such as 16x8");
  }
  for (const int count : {options.mesh_x, options.mesh_y}) {
    if (count < 1 || count > largest_mesh_count) {
      throw InputError("--mesh " + text + ": each count must be 1 .. " + std::to_string(largest_mesh_count));
    }
  }
}

}  // namespace

Options parse_options(int argc, const char* const* argv) {
  Options options;
  std::string mesh;
  std::string out;
  int threads = 0;

  CLI::App app(
      "The lowest modes of free vibration of a structure, K x = lambda M x: of a built-in model, the cantilevered "
      "tapered membrane NAFEMS FV32, or of matrices from Matrix Market files.",
      "modal_analysis");
  auto* mesh_option = app.add_option("--mesh", mesh, "elements of the built-in model along x across its axis [16x8]")
                          ->type_name("NXxNY");
  auto* stiffness_option =
      app.add_option("--stiffness", options.stiffness, "stiffness matrix K")->type_name("K.mtx")->excludes(mesh_option);
  app.add_option("--mass", options.mass, "mass matrix M [identity]")->type_name("M.mtx")->needs(stiffness_option);
  app.add_option("--modes", options.modes, "number of modes [6]")
      ->type_name("P")
      ->check(CLI::Range(1, std::numeric_limits<int>::max()));
  auto* out_option =
      app.add_option("--out", out,
                     "folder for the modes as files: modes.vtk (ParaView) and modes.svg of the built-in model, "
                     "modes.mtx of matrices from files [no files]")
          ->type_name("DIR");
  auto* threads_option = app.add_option("--threads", threads, "number of threads [OMP_NUM_THREADS, else all cores]")
                             ->type_name("T")
                             ->check(CLI::Range(1, most_threads));
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    std::cout << app.help();
    options.help = true;
    return options;
  } catch (const CLI::ParseError& error) {
    throw InputError(error.what());
  }
  if (mesh_option->count() > 0) {
    parse_mesh(mesh, options);
  }
  if (out_option->count() > 0) {
    options.out = out;
  }
  if (threads_option->count() > 0) {
    options.threads = threads;
  }
  return options;
}

}  // namespace modal
