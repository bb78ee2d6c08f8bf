// SPDX-License-Identifier: MIT
#include "report/component_report.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>

#include "ZORTAVMathKernel.h"
#include "report/mode_table.h"
#include "report/number_text.h"

namespace component {
namespace {

constexpr double megabyte = 1e6;
constexpr std::size_t most_rows = 64;  // of the table of ranks

std::string whole(double value) {
  return modal::fixed_text(value, 0);
}

void print_rank_row(std::ostream& out, const std::string& rank, const RankFigures& r) {
  char line[128];
  std::snprintf(line, sizeof line, "  %8s%8s%12s%18s%12s\n", rank.c_str(), whole(r.parts).c_str(),
                whole(r.unknowns).c_str(), modal::fixed_text(r.peak_bytes / megabyte, 1).c_str(),
                modal::fixed_text(r.bytes_sent / megabyte, 3).c_str());
  out << line;
}

}  // namespace

void print_model(std::ostream& out, const ModelFigures& model) {
  std::int32_t active = 0;
  std::int32_t highest = 0;
  std::int32_t reason = 0;
  ehgetisa(&active, &highest, &reason);
  out << model.title << "\n  unknowns         " << whole(model.unknowns + model.joint_unknowns)
      << "\n  on interfaces    " << model.joint_unknowns << "\n  parts            " << model.parts
      << "\n  ranks            " << model.ranks << "\n  instruction set  " << ehisanm(&active)
      << "\n  threads a rank   " << model.threads << "\n\n"
      << std::flush;
}

void print_modes(std::ostream& out, const ResultFigures& figures) {
  const modal::ModalResult& result = figures.result;
  modal::Structure of_table;
  of_table.published_frequency = figures.published_frequency;
  modal::print_mode_table(out, of_table, result);
  out << '\n';
  modal::print_missed_check(out, result);
  if (figures.part_modes_missed) {
    out << "MODES OF A PART WERE MISSED\n";
  }

  const double limit = modal::frequency(figures.lowest_part_limit);
  const double highest = modal::frequency(result.eigenvalue.back());
  const auto worst = std::max_element(result.residual.begin(), result.residual.end());
  char residual[32];
  std::snprintf(residual, sizeof residual, "%.1e", *worst);
  out << "Largest residual: " << residual << " (mode " << worst - result.residual.begin() + 1 << ")\n"
      << "Joined parts: " << figures.reduced_unknowns
      << " unknowns; fixed-interface modes a part: " << figures.part_modes << ", in every part up to "
      << modal::fixed_text(limit, 0) << " Hz, " << modal::fixed_text(limit / highest, 1)
      << " times the highest mode\n\n";
}

void print_ranks(std::ostream& out, std::span<const RankFigures> ranks) {
  out << "\n      rank   parts    unknowns  peak memory [MB]   sent [MB]\n";
  RankFigures largest{};
  double sent = 0.0;
  for (std::size_t r = 0; r < ranks.size(); ++r) {
    if (r < most_rows) {
      print_rank_row(out, std::to_string(r), ranks[r]);
    }
    largest.parts = std::max(largest.parts, ranks[r].parts);
    largest.unknowns = std::max(largest.unknowns, ranks[r].unknowns);
    largest.peak_bytes = std::max(largest.peak_bytes, ranks[r].peak_bytes);
    largest.bytes_sent = std::max(largest.bytes_sent, ranks[r].bytes_sent);
    sent += ranks[r].bytes_sent;
  }
  print_rank_row(out, "largest", largest);
  out << "Sent between ranks: " << modal::fixed_text(sent / megabyte, 3) << " MB\n";
}

}  // namespace component
