// SPDX-License-Identifier: MIT
#include "reduced/reduced_problem.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace component {
namespace {

using modal::at;

struct NoProgress : modal::Progress {
  void step(const char* /*phase*/, double /*done*/, double /*total*/) override {}
};

// Appends a row: its columns, from 0 and ascending, and its diagonal.
void append_row(modal::SymmetricMatrix& matrix, const std::vector<std::int32_t>& columns,
                const std::vector<double>& values, double diagonal) {
  for (const std::int32_t j : columns) {
    matrix.column.push_back(j + 1);
  }
  matrix.value.insert(matrix.value.end(), values.begin(), values.end());
  matrix.column.push_back(++matrix.order);
  matrix.value.push_back(diagonal);
  matrix.row_end.push_back(static_cast<std::int32_t>(matrix.value.size()));
}

}  // namespace

ReducedProblem::ReducedProblem(std::vector<std::vector<std::int32_t>> interface, std::int32_t joint_unknowns)
    : interface_(std::move(interface)), joint_unknowns_(joint_unknowns), first_mode_{joint_unknowns} {
  make_joint_rows();
}

void ReducedProblem::make_joint_rows() {
  std::vector<std::vector<std::int32_t>> parts(at(joint_unknowns_));
  for (std::size_t p = 0; p < interface_.size(); ++p) {
    for (const std::int32_t i : interface_[p]) {
      parts[at(i)].push_back(static_cast<std::int32_t>(p));
    }
  }
  const auto row = [&](std::int32_t i, std::vector<std::int32_t>& columns) {
    columns.clear();
    for (const std::int32_t p : parts[at(i)]) {
      std::copy_if(interface_[at(p)].begin(), interface_[at(p)].end(), std::back_inserter(columns),
                   [i](std::int32_t j) { return j < i; });
    }
    std::sort(columns.begin(), columns.end());
    columns.erase(std::unique(columns.begin(), columns.end()), columns.end());
  };
  // These are the root's largest arrays: counted before they are taken.
  std::vector<std::int32_t> columns;
  std::size_t entries = 0;
  for (std::int32_t i = 0; i < joint_unknowns_; ++i) {
    row(i, columns);
    entries += columns.size() + 1;
  }
  for (modal::SymmetricMatrix* matrix : {&stiffness_, &mass_}) {
    matrix->column.reserve(entries + entries / 8);  // and room for the modes
    matrix->value.reserve(entries + entries / 8);
    for (std::int32_t i = 0; i < joint_unknowns_; ++i) {
      row(i, columns);
      append_row(*matrix, columns, std::vector<double>(columns.size(), 0.0), 0.0);
    }
  }
}

void ReducedProblem::add(const ReducedPart& part) {
  const auto& own = interface_[first_mode_.size() - 1];
  const std::size_t nb = own.size();

  // Local unknowns in ascending order of their numbers.
  std::vector<std::size_t> sorted(nb);
  for (std::size_t a = 0; a < nb; ++a) {
    sorted[a] = a;
  }
  std::sort(sorted.begin(), sorted.end(), [&own](std::size_t a, std::size_t b) { return own[a] < own[b]; });

  const auto packed = [nb](std::size_t a, std::size_t b) {
    const auto [column, row] = std::minmax({a, b});
    return column * nb - column * (column + 1) / 2 + row;
  };
  for (std::size_t r = 0; r < nb; ++r) {
    const std::size_t a = sorted[r];
    auto place = at(stiffness_.row_end[at(own[a])]);
    for (std::size_t c = 0; c <= r; ++c) {
      const std::size_t b = sorted[c];
      while (stiffness_.column[place] != own[b] + 1) {
        ++place;  // an unknown of another part
      }
      stiffness_.value[place] += part.stiffness()[packed(a, b)];
      mass_.value[place] += part.mass()[packed(a, b)];
    }
  }

  std::vector<std::int32_t> columns(nb);
  std::vector<double> values(nb);
  std::transform(sorted.begin(), sorted.end(), columns.begin(), [&own](std::size_t a) { return own[a]; });
  // Modes of one part do not couple. The zeros between them make them alike to the ordering, which then takes them as one
  // vertex: a front of all of them leaves one update of the interface, and not each its own.
  std::vector<std::int32_t> earlier;
  const std::size_t modes = at(part.modes());
  for (std::size_t k = 0; k < modes; ++k) {
    for (std::size_t r = 0; r < nb; ++r) {
      values[r] = part.coupling()[k + sorted[r] * modes];
    }
    append_row(stiffness_, earlier, std::vector<double>(k, 0.0), part.eigenvalue()[k]);
    append_row(mass_, columns, values, 1.0);
    earlier.push_back(stiffness_.order - 1);
    columns.push_back(earlier.back());
    values.push_back(0.0);
  }
  first_mode_.push_back(stiffness_.order);
}

modal::ModalResult ReducedProblem::solve(std::int32_t modes) const {
  NoProgress quiet;
  return modal::find_lowest_modes(stiffness_, mass_, modes, quiet);
}

modal::Array<double> ReducedProblem::share(int part, const modal::ModalResult& result) const {
  const std::size_t columns = result.eigenvalue.size();
  const auto column = [&](std::size_t c) { return result.mode.data() + c * at(order()); };
  modal::Array<double> coordinates;
  for (std::size_t c = 0; c < columns; ++c) {
    for (const std::int32_t i : interface_of(part)) {
      coordinates.push_back(column(c)[i]);
    }
  }
  for (std::size_t c = 0; c < columns; ++c) {
    coordinates.insert(coordinates.end(), column(c) + first_mode_[at(part)], column(c) + first_mode_[at(part) + 1]);
  }
  return coordinates;
}

}  // namespace component
