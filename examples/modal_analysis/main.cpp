// SPDX-License-Identifier: MIT
// The lowest modes of free vibration, or the condensed stiffness, of a structure: a client of the library.
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

#include "condensation_run.h"
#include "failure_report.h"
#include "modal_run.h"
#include "options.h"
#include "run_support.h"
#include "services/catalog_folder.h"
#include "services/library_start.h"
#include "services/listing.h"

namespace {

// Once: a failure before the services are there starts them too.
void start_services(const char* program) {
  static bool started = false;
  if (started) {
    return;
  }
  started = true;
  modal::add_catalog_folder(program);
  if (const std::string complaint = modal::open_listing(); !complaint.empty()) {
    std::cerr << "modal_analysis: " << complaint << '\n';
  }
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const modal::Options options = modal::parse_options(argc, argv);
    if (options.help) {
      return EXIT_SUCCESS;
    }
    start_services(argv[0]);
    modal::start_library(options.threads);
    return options.condense.empty() ? modal::run_modal_analysis(options) : modal::run_condensation(options);
  } catch (const std::exception& error) {
    start_services(argv[0]);
    return modal::report_failure(error);
  }
}
