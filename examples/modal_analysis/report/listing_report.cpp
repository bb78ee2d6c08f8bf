// SPDX-License-Identifier: MIT
#include "report/listing_report.h"

#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "ZORTAVMathKernel.h"
#include "ZORTavTimer.h"
#include "report/condensation_report.h"
#include "report/mode_table.h"
#include "report/number_text.h"
#include "services/array_memory.h"
#include "services/listing.h"

namespace modal {
namespace {

constexpr double megabyte = 1e6;
constexpr double word = 8.0;

// A line of a printf format whose text fits.
template <class... Values>
void listf(const char* format, Values... values) {
  char text[200];
  std::snprintf(text, sizeof text, format, values...);
  list(text);
}

template <class Print>
void list_printed(const Print& print) {
  std::stringstream printed;
  print(printed);
  for (std::string line; std::getline(printed, line);) {
    list(line);
  }
}

double words_in_megabytes(void (*ask)(std::int32_t*)) {
  std::int32_t words = 0;
  ask(&words);
  return words * word / megabyte;
}

std::string date() {
  char* text = nullptr;
  TavGetDate(text);
  std::string result = text != nullptr ? text : "";
  std::free(text);  // NOLINT(cppcoreguidelines-no-malloc): as the library hands it over
  return result;
}

}  // namespace

void list_model(const Structure& structure, const std::string& task, int team) {
  std::int32_t active = 0;
  std::int32_t highest = 0;
  std::int32_t reason = 0;
  ehgetisa(&active, &highest, &reason);
  std::int32_t threads = 0;
  ehucpu(&threads);
  list_title("MODAL ANALYSIS   " + date());
  list("  model                      " + structure.title);
  list("  task                       " + task);
  if (!structure.mesh.node.empty()) {
    listf("  nodes, elements            %zu, %zu", structure.mesh.node.size(), structure.mesh.element.size());
  }
  listf("  unknowns                   %d", structure.stiffness.order);
  listf("  entries of K, of M         %d, %d (lower triangles)", structure.stiffness.entries(),
        structure.mass.entries());
  listf("  instruction set            %s, the machine offers %s", ehisanm(&active), ehisanm(&highest));
  listf("  threads                    %d in dense products, %d in sparse ones", threads, team);
  listf("  working memory             %.0f MB", words_in_megabytes(ehumem));
  listf("  largest array allowed      %.0f MB", words_in_megabytes(ehalmxc));
}

void list_factor(const FactorSummary& summary) {
  list_title("ORDERING AND FACTOR K = L*D*LT");
  listf("  fronts                     %d, the largest of order %d", summary.fronts, summary.largest_front);
  listf("  entries of L               %lld, %.1f MB", static_cast<long long>(summary.factor_entries),
        static_cast<double>(summary.factor_entries) * word / megabyte);
  listf("  waiting updates, at most   %lld entries", static_cast<long long>(summary.stack_entries));
  listf("  operations                 %.3e", summary.operations);
  list_real("  smallest pivot ratio       %.3e", summary.smallest_ratio);
}

void ListingProgress::factored(const FactorSummary& summary) {
  list_factor(summary);
  next_.factored(summary);
}

void ListingProgress::iterated(const IterationState& state) {
  if (!titled_) {
    list_title("SUBSPACE ITERATION");
    list("  step   vectors   independent   wanted   largest change   largest defect");
    titled_ = true;
  }
  listf("  %4d%10d%14d%9d%17.2e%17.2e", state.number, state.block, state.kept, state.wanted, state.change,
        state.defect);
  next_.iterated(state);
}

void list_modes(const ModalResult& result) {
  list_title("MODES");
  list("  mode        eigenvalue    frequency [Hz]    residual");
  for (std::size_t i = 0; i < result.eigenvalue.size(); ++i) {
    listf("%6zu%18.10e%18s%12.2e", i + 1, result.eigenvalue[i], frequency_text(frequency(result.eigenvalue[i])).c_str(),
          result.residual[i]);
  }
  list("");
  list_printed([&](std::ostream& out) { print_missed_check(out, result); });
  list_number("  Modes found: ", static_cast<std::int32_t>(result.eigenvalue.size()));
}

void list_condensed(const RetainedUnknowns& retained, const CondensedStiffness& condensed) {
  list_title("CONDENSED STIFFNESS");
  list_printed([&](std::ostream& out) { print_condensed(out, retained, condensed); });
  list_number("  Unknowns retained: ", condensed.order);
}

void list_phases(const std::vector<PhaseTime>& phases) {
  list_title("PHASES");
  list_printed([&](std::ostream& out) { print_phase_times(out, phases); });
}

void list_end(const std::string& files) {
  list("");
  list_real("  Peak memory of the arrays: %.1f MB", ArrayMemory::instance().peak_bytes() / megabyte);
  list("  Wrote " + files);
}

}  // namespace modal
