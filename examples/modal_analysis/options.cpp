// SPDX-License-Identifier: MIT
#include "options.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <limits>

#include "option_values.h"
#include "structure/input_error.h"

namespace modal {

Options parse_options(int argc, const char* const* argv) {
  Options options;
  std::string mesh;
  std::string parts;
  std::string modes;
  std::string threads;

  CLI::App app(
      "The lowest modes of free vibration, K x = lambda M x, of a built-in model (the cantilevered\n"
      "tapered membrane NAFEMS FV32), of a steel membrane 5 cm thick whose mesh comes from a Gmsh file,\n"
      "or of matrices from Matrix Market files; or their stiffness condensed to few unknowns.\n"
      "Where the environment variable ADL_ODT_OUT names a folder, the run writes its listing there.\n",
      "modal_analysis");
  auto* mesh_option = app.add_option("--mesh", mesh, "elements of the built-in model along x across its axis [16x8]")
                          ->type_name("NXxNY");
  auto* parts_option =
      app.add_option("--parts", parts, "mesh the built-in model in so many parts and join them [1]")->type_name("N");
  auto* mesh_file_option =
      app.add_option("--mesh-file", options.mesh_file,
                     "Gmsh mesh, MSH 4.1 as text, of eight-node quadrilaterals in metres; the points and\n"
                     "curves of the physical groups \"clamped\" are its support")
          ->type_name("FILE.msh")
          ->excludes(mesh_option)
          ->excludes(parts_option);
  auto* stiffness_option = app.add_option("--stiffness", options.stiffness, "stiffness matrix K")
                               ->type_name("K.mtx")
                               ->excludes(mesh_option)
                               ->excludes(parts_option)
                               ->excludes(mesh_file_option);
  auto* mass_option =
      app.add_option("--mass", options.mass, "mass matrix M [identity]")->type_name("M.mtx")->needs(stiffness_option);
  auto* modes_option =
      app.add_option("--modes", modes, "number of modes [" + std::to_string(usual_modes) + "]")->type_name("P");
  auto* condense_option =
      app.add_option("--condense", options.condense,
                     "instead of modes: K condensed statically to the unknowns of this file, one a line.\n"
                     "Of a mesh 'NODE x' or 'NODE y': NODE as in the Gmsh file; in the built-in model from 1,\n"
                     "column after column from the clamped edge, each upward. Of matrices the unknown, from 1")
          ->type_name("FILE")
          ->excludes(modes_option)
          ->excludes(mass_option);
  auto* out_option = app.add_option("--out", options.out,
                                    "folder for the results as files [" + options.out + "]: modes.vtk (ParaView)\n" +
                                        "and modes.svg of a mesh, modes.mtx of matrices; condensed.mtx")
                         ->type_name("DIR");
  auto* threads_option =
      app.add_option("--threads", threads, "number of threads [OMP_NUM_THREADS, else all cores]")->type_name("T");
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    std::cout << app.help();
    options.help = true;
    return options;
  } catch (const CLI::ParseError& error) {
    throw InputError(error.what());
  }
  for (const CLI::Option* option : {mesh_file_option, stiffness_option, mass_option, condense_option, out_option}) {
    if (option->count() > 0 && option->as<std::string>().empty()) {
      throw InputError(option->get_name() + ": the name is empty");
    }
  }
  if (mesh_option->count() > 0) {
    parse_mesh(mesh, options.mesh_x, options.mesh_y);
  }
  if (parts_option->count() > 0) {
    options.parts = whole_number("--parts", parts, options.mesh_x);
  }
  if (modes_option->count() > 0) {
    options.modes = whole_number("--modes", modes, std::numeric_limits<int>::max());
  }
  if (threads_option->count() > 0) {
    options.threads = whole_number("--threads", threads, most_threads);
  }
  return options;
}

}  // namespace modal
