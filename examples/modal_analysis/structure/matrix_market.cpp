// SPDX-License-Identifier: MIT
// The files are read with CHOLMOD's Matrix Market reader (T. A. Davis), after the check that names the line at fault.
#include "structure/matrix_market.h"

#include <suitesparse/cholmod.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <tuple>

#include "structure/input_error.h"
#include "structure/matrix_market_check.h"

namespace modal {
namespace {

// The two halves of a general file may differ by the rounding of whoever summed them.
constexpr double symmetry_tolerance = 1e-12;

// An entry as the file has it, turned into the lower triangle.
struct Entry {
  std::int32_t row;  // from 0, row >= column
  std::int32_t column;
  bool mirrored;         // stood above the diagonal
  std::int32_t ordinal;  // entry number in the file, from 0
  double value;
};

struct Triplets {
  std::int32_t order = 0;
  bool both_halves = false;
  Array<Entry> entry;
};

class Cholmod {
 public:
  Cholmod() {
    cholmod_start(&common_);
    common_.print = 0;  // faults are reported by this program, in one line
    common_.error_handler = nullptr;
  }
  ~Cholmod() { cholmod_finish(&common_); }
  Cholmod(const Cholmod&) = delete;
  Cholmod& operator=(const Cholmod&) = delete;
  cholmod_common* common() { return &common_; }

 private:
  cholmod_common common_{};
};

std::int32_t checked_order(const std::string& path, std::size_t rows, std::size_t columns, std::int32_t wanted) {
  const auto order = static_cast<std::int32_t>(rows);
  if (rows != columns) {
    throw InputError(path + ": the matrix is not square");
  }
  if (wanted != 0 && order != wanted) {
    throw InputError(path + ": the matrix has order " + std::to_string(order) +
                     ", but the stiffness matrix has order " + std::to_string(wanted));
  }
  return order;
}

Entry lower_entry(std::int32_t row, std::int32_t column, std::int32_t ordinal, double value) {
  return {std::max(row, column), std::min(row, column), column > row, ordinal, value};
}

Triplets from_coordinates(const std::string& path, const cholmod_triplet& t, std::int32_t wanted) {
  Triplets triplets;
  triplets.order = checked_order(path, t.nrow, t.ncol, wanted);
  if (wanted == 0 && t.nnz < t.nrow) {
    throw InputError(path + ": " + std::to_string(t.nnz) + " entries cannot make a regular matrix of order " +
                     std::to_string(t.nrow));
  }
  triplets.both_halves = t.stype == 0;
  triplets.entry.reserve(t.nnz);
  const auto* row = static_cast<const std::int32_t*>(t.i);
  const auto* column = static_cast<const std::int32_t*>(t.j);
  const auto* value = static_cast<const double*>(t.x);
  for (std::size_t k = 0; k < t.nnz; ++k) {
    triplets.entry.push_back(lower_entry(row[k], column[k], static_cast<std::int32_t>(k), value[k]));
  }
  return triplets;
}

// CHOLMOD has filled both halves, whatever the file had.
Triplets from_array(const std::string& path, const cholmod_dense& d, std::int32_t wanted) {
  Triplets triplets;
  triplets.order = checked_order(path, d.nrow, d.ncol, wanted);
  triplets.both_halves = true;
  const auto* value = static_cast<const double*>(d.x);
  for (std::int32_t j = 0; j < triplets.order; ++j) {
    for (std::int32_t i = 0; i < triplets.order; ++i) {
      const std::size_t k = static_cast<std::size_t>(j) * d.d + static_cast<std::size_t>(i);
      if (value[k] != 0) {
        triplets.entry.push_back(lower_entry(i, j, static_cast<std::int32_t>(k), value[k]));
      }
    }
  }
  return triplets;
}

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

// CHOLMOD knows the banner in one spelling; under another it guesses what follows, and leaks memory where that fails.
// The file, or a copy that begins as CHOLMOD wants it.
File with_plain_banner(const std::string& path) {
  std::ifstream source(path, std::ios::binary);
  std::string banner;
  std::getline(source, banner);
  std::istringstream words(banner);
  std::string plain = "%%MatrixMarket";
  std::string word;
  for (words >> word; words >> word;) {
    std::transform(word.begin(), word.end(), word.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    plain += " " + word;
  }
  if (plain == banner) {
    source.close();
  }
  File file(plain == banner ? std::fopen(path.c_str(), "r") : std::tmpfile(), &std::fclose);
  if (file && source.is_open()) {
    std::fputs((plain + "\n").c_str(), file.get());
    for (std::string line; std::getline(source, line);) {
      std::fputs((line + "\n").c_str(), file.get());
    }
    std::rewind(file.get());
  }
  if (!file || std::ferror(file.get()) != 0) {
    throw InputError(path + ": the file cannot be read");
  }
  return file;
}

Triplets read_triplets(const std::string& path, std::int32_t wanted) {
  check_matrix_market(path);
  const File file = with_plain_banner(path);
  Cholmod cholmod;
  int type = 0;
  void* read = cholmod_read_matrix(file.get(), 0, &type, cholmod.common());
  if (read != nullptr && type == CHOLMOD_TRIPLET) {
    auto* triplet = static_cast<cholmod_triplet*>(read);
    const auto free = [&cholmod](cholmod_triplet* t) { cholmod_free_triplet(&t, cholmod.common()); };
    const std::unique_ptr<cholmod_triplet, decltype(free)> owner(triplet, free);
    return from_coordinates(path, *triplet, wanted);
  }
  if (read != nullptr && type == CHOLMOD_DENSE) {
    auto* dense = static_cast<cholmod_dense*>(read);
    const auto free = [&cholmod](cholmod_dense* d) { cholmod_free_dense(&d, cholmod.common()); };
    const std::unique_ptr<cholmod_dense, decltype(free)> owner(dense, free);
    return from_array(path, *dense, wanted);
  }
  throw InputError(path + (cholmod.common()->status == CHOLMOD_OUT_OF_MEMORY ? ": not enough memory to read the matrix"
                                                                             : ": the matrix cannot be read"));
}

std::string place(const Entry& e) {
  const std::int32_t row = e.mirrored ? e.column : e.row;
  const std::int32_t column = e.mirrored ? e.row : e.column;
  return "(" + std::to_string(row + 1) + ", " + std::to_string(column + 1) + ")";
}

[[noreturn]] void refuse_entry(const std::string& path, const Entry& e, const std::string& fault) {
  refuse_line(path, line_of_entry(path, e.ordinal), "entry " + place(e) + " " + fault);
}

// entry[k] and, where it is there, entry[k + 1] are the two halves of one off-diagonal pair: they must agree.
void check_pair(const std::string& path, const Entry& e, double other, double diagonal_scale) {
  const double scale = std::max({std::fabs(e.value), std::fabs(other), diagonal_scale});
  if (std::fabs(e.value - other) > symmetry_tolerance * scale) {
    refuse_entry(path, e, "differs from its mirror image: the matrix is not symmetric");
  }
}

}  // namespace

SymmetricMatrix read_symmetric_matrix(const std::string& path, std::int32_t order) {
  Triplets triplets = read_triplets(path, order);
  Array<Entry>& entry = triplets.entry;
  std::sort(entry.begin(), entry.end(), [](const Entry& a, const Entry& b) {
    return std::tie(a.row, a.column, a.mirrored, a.ordinal) < std::tie(b.row, b.column, b.mirrored, b.ordinal);
  });
  Array<double> diagonal(static_cast<std::size_t>(triplets.order), 0.0);
  for (const Entry& e : entry) {
    if (e.row == e.column) {
      diagonal[static_cast<std::size_t>(e.row)] = e.value;
    }
  }

  SymmetricMatrix matrix;
  matrix.order = triplets.order;
  matrix.row_end.reserve(diagonal.size() + 1);
  std::size_t k = 0;
  for (std::int32_t i = 0; i < matrix.order; ++i) {
    while (k < entry.size() && entry[k].row == i) {
      const Entry& e = entry[k++];
      const auto same_place = [&](std::size_t at) {
        return at < entry.size() && entry[at].row == e.row && entry[at].column == e.column;
      };
      if (same_place(k) && entry[k].mirrored == e.mirrored) {
        refuse_entry(path, entry[k], "is given twice");
      }
      if (e.column == i) {
        continue;  // placed last, below
      }
      const bool paired = same_place(k);
      if (triplets.both_halves) {
        const double scale = std::sqrt(std::fabs(diagonal[static_cast<std::size_t>(i)])) *
                             std::sqrt(std::fabs(diagonal[static_cast<std::size_t>(e.column)]));
        check_pair(path, e, paired ? entry[k].value : 0.0, scale);
      }
      k += paired ? 1 : 0;
      if (same_place(k)) {
        refuse_entry(path, entry[k], "is given twice");
      }
      matrix.column.push_back(e.column + 1);
      matrix.value.push_back(e.value);
    }
    matrix.column.push_back(i + 1);
    matrix.value.push_back(diagonal[static_cast<std::size_t>(i)]);
    matrix.row_end.push_back(static_cast<std::int32_t>(matrix.column.size()));
  }
  return matrix;
}

SymmetricMatrix identity_matrix(std::int32_t order) {
  SymmetricMatrix matrix;
  matrix.order = order;
  for (std::int32_t i = 1; i <= order; ++i) {
    matrix.column.push_back(i);
    matrix.row_end.push_back(i);
  }
  matrix.value.assign(static_cast<std::size_t>(order), 1.0);
  return matrix;
}

Structure read_structure(const std::string& stiffness_path, const std::string& mass_path) {
  Structure structure;
  structure.title = "K from " + stiffness_path + (mass_path.empty() ? ", M = I" : ", M from " + mass_path);
  structure.stiffness = read_symmetric_matrix(stiffness_path, 0);
  const std::int32_t order = structure.stiffness.order;
  if (mass_path.empty()) {
    structure.mass = identity_matrix(order);
    return structure;
  }
  structure.mass = read_symmetric_matrix(mass_path, order);
  bool massless = true;
  for (std::size_t i = 0; i < static_cast<std::size_t>(order); ++i) {
    const double diagonal = structure.mass.value[static_cast<std::size_t>(structure.mass.row_end[i + 1]) - 1];
    if (diagonal < 0) {
      throw InputError(mass_path + ": the diagonal of row " + std::to_string(i + 1) +
                       " is negative: not a mass matrix");
    }
    massless = massless && diagonal == 0;
  }
  if (massless) {
    throw InputError(mass_path + ": the diagonal is zero: there is no mass");
  }
  return structure;
}

}  // namespace modal
