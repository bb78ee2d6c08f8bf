// SPDX-License-Identifier: MIT
#include "options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <limits>

#include "option_values.h"
#include "structure/input_error.h"

namespace component {
namespace {

constexpr const char* threads_variable = "OMP_NUM_THREADS";

// One thread a rank unless told otherwise. A value that is no number is left to the library, which then takes one.
int usual_threads() {
  const char* const text = std::getenv(threads_variable);
  return text == nullptr ? 1 : std::clamp(std::atoi(text), 1, modal::most_threads);
}

}  // namespace

Options parse_options(int argc, const char* const* argv, int ranks, bool tell) {
  Options options;
  std::string mesh;
  std::string parts;
  std::string modes;
  std::string part_modes;
  std::string threads;

  CLI::App app(
      "The lowest modes of free vibration, K x = lambda M x, of a structure cut into parts: each rank of an MPI\n"
      "run condenses its own parts to their interfaces and a few modes, and the condensed parts are joined.\n"
      "The structure is a built-in model (the cantilevered tapered membrane NAFEMS FV32), or a steel membrane\n"
      "5 cm thick whose parts come from Gmsh files.\n"
      "    mpirun -n 4 component_modes --mesh 160x80 --parts 4",
      "component_modes");
  auto* mesh_option = app.add_option("--mesh", mesh, "elements of the built-in model along x across its axis [16x8]")
                          ->type_name("NXxNY");
  auto* parts_option =
      app.add_option("--parts", parts, "parts along the axis, any number of them a rank [one a rank]")->type_name("N");
  auto* files_option =
      app.add_option(
             "--mesh-file", options.mesh_file,
             "the parts instead, each a Gmsh mesh, MSH 4.1 as text, of eight-node quadrilaterals in metres;\n"
             "points and curves of the physical groups \"clamped\" are the support, coincident nodes the joints")
          ->type_name("FILE.msh...")
          ->excludes(mesh_option)
          ->excludes(parts_option);
  auto* modes_option =
      app.add_option("--modes", modes, "number of modes [" + std::to_string(usual_modes) + "]")->type_name("P");
  auto* part_modes_option = app.add_option("--part-modes", part_modes,
                                           "modes of each part with its interface held that join the interfaces [" +
                                               std::to_string(usual_part_modes) + "]")
                                ->type_name("P");
  auto* out_option = app.add_option("--out", options.out, "folder for the modes, a VTK file a part (ParaView) [none]")
                         ->type_name("DIR");
  auto* threads_option =
      app.add_option("--threads", threads, "number of threads a rank [OMP_NUM_THREADS, else 1]")->type_name("T");
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    if (tell) {
      std::cout << app.help();
    }
    options.help = true;
    return options;
  } catch (const CLI::ParseError& error) {
    throw modal::InputError(error.what());
  }
  for (const std::string& file : options.mesh_file) {
    if (file.empty()) {
      throw modal::InputError("--mesh-file: the name is empty");
    }
  }
  if (out_option->count() > 0 && options.out.empty()) {
    throw modal::InputError("--out: the name is empty");
  }
  if (mesh_option->count() > 0) {
    modal::parse_mesh(mesh, options.mesh_x, options.mesh_y);
  }
  options.parts = files_option->count() > 0   ? static_cast<int>(options.mesh_file.size())
                  : parts_option->count() > 0 ? modal::whole_number("--parts", parts, options.mesh_x)
                                              : std::min(ranks, options.mesh_x);
  if (modes_option->count() > 0) {
    options.modes = modal::whole_number("--modes", modes, std::numeric_limits<std::int32_t>::max());
  }
  if (part_modes_option->count() > 0) {
    options.part_modes = modal::whole_number("--part-modes", part_modes, std::numeric_limits<std::int32_t>::max());
  }
  options.threads =
      threads_option->count() > 0 ? modal::whole_number("--threads", threads, modal::most_threads) : usual_threads();
  return options;
}

}  // namespace component
