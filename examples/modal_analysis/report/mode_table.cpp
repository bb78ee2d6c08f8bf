// SPDX-License-Identifier: MIT
#include "report/mode_table.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <string>

#include "report/number_text.h"

namespace modal {
namespace {

std::string right(const std::string& text, std::size_t width) {
  return std::string(text.size() < width ? width - text.size() : 0, ' ') + text;
}

// Five significant digits, as benchmarks are published.
std::string published_text(double hertz) {
  char text[32];
  std::snprintf(text, sizeof text, "%#.5g", hertz);
  return text;
}

std::string deviation_text(double value, double published) {
  const std::string percent = fixed_text(100 * (value - published) / published, 3);
  const bool positive = percent.front() != '-' && percent != "0.000";
  return (positive ? "+" : "") + percent + " %";
}

}  // namespace

void print_mode_table(std::ostream& out, const Structure& structure, const ModalResult& result) {
  const std::vector<double>& published = structure.published_frequency;
  const bool compare = !published.empty();
  out << "  mode";
  if (!compare) {
    out << right("eigenvalue", 15);
  }
  out << right("frequency [Hz]", 18);
  if (compare) {
    out << right("published [Hz]", 18) << right("deviation", 13);
  }
  out << right("residual", 12) << '\n';

  for (std::size_t i = 0; i < result.eigenvalue.size(); ++i) {
    const double hertz = frequency(result.eigenvalue[i]);
    out << right(std::to_string(i + 1), 6);
    if (!compare) {
      out << right(short_text(result.eigenvalue[i]), 15);
    }
    out << right(frequency_text(hertz), 18);
    if (compare) {
      const bool known = i < published.size();
      out << right(known ? published_text(published[i]) : "-", 18)
          << right(known ? deviation_text(hertz, published[i]) : "-", 13);
    }
    out << right(bound_text(result.residual[i]), 12) << '\n';
  }
}

bool no_mode_missed(const ModalResult& result) {
  return result.below_shift == result.found_below_shift;
}

void print_missed_check(std::ostream& out, const ModalResult& result) {
  out << "Sturm check: " << result.below_shift << " eigenvalues below "
      << frequency_text(frequency(std::max(result.shift, 0.0))) << " Hz, " << result.found_below_shift
      << " found: " << (no_mode_missed(result) ? "no mode was missed" : "MODES WERE MISSED") << '\n';
}

void print_phase_times(std::ostream& out, const std::vector<PhaseTime>& phases) {
  std::size_t width = std::string("phase").size();
  for (const PhaseTime& phase : phases) {
    width = std::max(width, phase.phase.size());
  }
  const auto left = [width](const std::string& text) { return text + std::string(width - text.size(), ' '); };
  out << "  " << left("phase") << right("elapsed [s]", 14) << right("processor [s]", 16) << '\n';
  double elapsed = 0.0;
  double processor = 0.0;
  for (const PhaseTime& phase : phases) {
    out << "  " << left(phase.phase) << right(fixed_text(phase.elapsed, 3), 14)
        << right(fixed_text(phase.processor, 3), 16) << '\n';
    elapsed += phase.elapsed;
    processor += phase.processor;
  }
  out << "  " << left("total") << right(fixed_text(elapsed, 3), 14) << right(fixed_text(processor, 3), 16) << '\n';
}

}  // namespace modal
