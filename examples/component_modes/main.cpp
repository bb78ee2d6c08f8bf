// SPDX-License-Identifier: MIT
// The lowest modes of free vibration of a structure whose parts are condensed on the ranks of an MPI run: a client of the
// library.
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

#include "component_run.h"
#include "failure_text.h"
#include "options.h"
#include "parallel/ranks.h"
#include "services/catalog_folder.h"
#include "services/library_start.h"
#include "services/listing.h"

namespace {

// Every rank reads the same command line; one of them says what is wrong with it.
int run(component::Ranks& ranks, int argc, char** argv) {
  component::Options options;
  try {
    options = component::parse_options(argc, argv, ranks.size(), ranks.is_root());
  } catch (const std::exception& error) {
    if (ranks.is_root()) {
      component::print_failure(error.what());
    }
    return EXIT_FAILURE;
  }
  if (options.help) {
    return EXIT_SUCCESS;
  }
  modal::add_catalog_folder(argv[0]);
  if (const std::string complaint = modal::open_listing(); !complaint.empty() && ranks.is_root()) {
    component::print_failure(complaint);
  }
  modal::start_library(options.threads);
  try {
    return component::run_component_modes(ranks, options);
  } catch (const component::Stopped&) {
    return EXIT_FAILURE;
  }
}

}  // namespace

int main(int argc, char** argv) {
  component::Ranks ranks(argc, argv);
  return run(ranks, argc, argv);
}
