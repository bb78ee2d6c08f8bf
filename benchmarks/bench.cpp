// SPDX-License-Identifier: MIT
// The numerical routines beside their peers and beside what the machine allows: one table.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <string>

#include "ZORTAVConfiguration.h"
#include "ZORTAVInstructionSet.h"
#include "routines.h"
#include "support/blas_library.h"
#include "support/limits.h"

namespace {

std::string first_line_with(const char* file, const std::string& beginning) {
  std::ifstream stream(file);
  for (std::string line; std::getline(stream, line);) {
    if (line.starts_with(beginning)) {
      return line;
    }
  }
  return {};
}

void print_conditions() {
  int32_t active = 0;
  int32_t highest = 0;
  int32_t reason = 0;
  ehgetisa(&active, &highest, &reason);
  std::printf("%s; load: %s; our level: %s; peers:", first_line_with("/proc/cpuinfo", "model name").c_str(),
              first_line_with("/proc/loadavg", "").c_str(), ehisanm(&active));
  for (const zorbench::BlasLibrary& library : zorbench::blas_libraries()) {
    std::printf(" %s", library.name().c_str());
  }
  constexpr std::size_t in_memory = std::size_t{256} << 20;
  std::printf("\nlimits: %.1f Gflop/s fused, %.1f separate; %.1f and %.1f with two threads; addition chain %.2f ns;",
              zorbench::fused_peak() * 1e-9, zorbench::separate_peak() * 1e-9, zorbench::fused_peak(2) * 1e-9,
              zorbench::separate_peak(2) * 1e-9, zorbench::addition_latency() * 1e9);
  std::printf(" memory read %.1f, copy %.1f GB/s\n", zorbench::traffic_rate(zorbench::Traffic::read, in_memory) * 1e-9,
              zorbench::traffic_rate(zorbench::Traffic::copy, in_memory) * 1e-9);
  std::printf(
      "ratios: time of the peer by ours, above 1 when ours is faster; medians over interleaved rounds\n"
      "time: of the processor for one thread, elapsed for two; data: warm, as the call before left it\n\n");
}

int run(int argc, char** argv) {
  zorbench::Options options;
  CLI::App arguments("Measures the routines beside their peers in one process and prints one table.");
  arguments.add_option("routine", options.routines, "beginnings of the names of the routines wanted; none: all");
  arguments.add_flag("--quick", options.quick, "fewer rounds");
  arguments.add_option("--csv", options.csv, "also write every contender's result to this file");
  CLI11_PARSE(arguments, argc, argv);

  int32_t decision = 0;
  ehaldb(&decision);
  zorbench::set_threads_of_all(1);
  print_conditions();
  zorbench::Report report(options);
  for (auto* const family : {zorbench::elementwise, zorbench::searches, zorbench::sums, zorbench::matrix_vector,
                             zorbench::packed_solves, zorbench::matrix_product, zorbench::sparse_product,
                             zorbench::sparse_patterns, zorbench::record_sort, zorbench::front_elimination,
                             zorbench::cholesky, zorbench::eigen_solver, zorbench::inversion, zorbench::octree}) {
    family(report);
  }
  std::printf("load at the end: %s\n", first_line_with("/proc/loadavg", "").c_str());
  report.summary();
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return EXIT_FAILURE;
  }
}
