// SPDX-License-Identifier: MIT
#include "report/condensation_report.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "report/number_text.h"

namespace modal {
namespace {

constexpr std::int32_t most_columns = 8;
constexpr std::size_t width = 14;

std::string right(const std::string& text) {
  return std::string(text.size() < width ? width - text.size() : 1, ' ') + text;
}

}  // namespace

void print_condensed(std::ostream& out, const RetainedUnknowns& retained, const CondensedStiffness& condensed) {
  const std::int32_t n = condensed.order;
  if (n > most_columns) {
    out << "  order " << n << ": see the file\n";
    return;
  }
  out << std::string(width, ' ');
  for (const std::string& name : retained.name) {
    out << right(name);
  }
  for (std::int32_t i = 0; i < n; ++i) {
    out << '\n' << right(retained.name[static_cast<std::size_t>(i)]);
    for (std::int32_t j = 0; j <= i; ++j) {
      out << right(short_text(condensed(i, j)));
    }
  }
  out << '\n';
}

void write_condensed_matrix(std::ostream& out, const Structure& structure, const RetainedUnknowns& retained,
                            const CondensedStiffness& condensed) {
  std::string title = structure.title;  // file names are part of it, and those may hold anything
  std::replace_if(
      title.begin(), title.end(), [](unsigned char c) { return c < ' '; }, '?');
  out << "%%MatrixMarket matrix array real symmetric\n% condensed stiffness, " << title << "\n% unknowns:";
  for (const std::string& name : retained.name) {
    out << "\n%   " << name;
  }
  out << '\n' << condensed.order << ' ' << condensed.order << '\n';
  for (const double value : condensed.lower) {
    char text[32];
    out.write(text, std::to_chars(text, text + sizeof text, value).ptr - text);
    out << '\n';
  }
}

}  // namespace modal
