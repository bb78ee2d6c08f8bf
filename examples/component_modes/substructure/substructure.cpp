// SPDX-License-Identifier: MIT
#include "substructure/substructure.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

#include "condensation/condensed_stiffness.h"
#include "factorization/compressed_graph.h"
#include "factorization/front_elimination.h"
#include "factorization/index.h"
#include "factorization/kept_unknowns.h"
#include "factorization/nested_dissection.h"
#include "modes/block_operations.h"
#include "modes/matrix_pencil.h"
#include "modes/modal_solver.h"

namespace component {
namespace {

using modal::at;

// Columns of the interface taken at a time: enough for the dense kernels, and few beside the factor.
constexpr std::int32_t columns_at_a_time = 32;

std::vector<std::int32_t> unknowns_from(std::int32_t first, std::int32_t end) {
  std::vector<std::int32_t> unknowns(at(end - first));
  std::iota(unknowns.begin(), unknowns.end(), first);
  return unknowns;
}

modal::AssemblyTree plan(const modal::Structure& structure, std::int32_t interior) {
  const std::int32_t n = structure.stiffness.order;
  const modal::SymmetricMatrix pattern = modal::shifted(structure.stiffness, structure.mass, 0.0);
  if (interior < n) {
    return modal::plan_keeping(pattern, unknowns_from(interior, n));
  }
  const modal::CompressedGraph compressed = modal::compress(pattern);
  return modal::assembly_tree(compressed, modal::nested_dissection(compressed.graph));
}

}  // namespace

Substructure::Substructure(modal::Structure structure, std::int32_t interior)
    : structure_(std::move(structure)), tree_(plan(structure_, interior)), factor_(tree_) {
  const modal::Elimination elimination =
      factor_.factorize(structure_.stiffness, modal::positive_definite_rule(order()), [](double, double) {});
  if (elimination.refusal) {
    throw modal::PivotRefused(elimination.refusal->equation, elimination.refusal->status, elimination.refusal->value,
                              0.0);
  }
}

void Substructure::find_modes(std::int32_t count) {
  modes_ = fixed_interface_modes(structure_.stiffness, structure_.mass, tree_, factor_, std::min(count, interior()));
}

// S is what the elimination leaves. Of the mass, Ψ̂ = (Ψ, I): Ψ̂ᵀ·M·Ψ̂ and Φᵀ·M·Ψ̂ some columns at a time.
ReducedPart Substructure::reduced() const {
  const std::int32_t n = order();
  const std::int32_t nb = interface();
  const auto count = static_cast<std::int32_t>(modes_.eigenvalue.size());
  ReducedPart part(nb, count);
  std::copy(modes_.eigenvalue.begin(), modes_.eigenvalue.end(), part.eigenvalue());
  if (nb == 0) {
    return part;
  }
  {
    modal::RetainedBlock block(structure_.stiffness, unknowns_from(interior(), n));
    block.add_update(tree_, factor_.kept_update().data());
    std::copy(block.sum().lower.begin(), block.sum().lower.end(), part.stiffness());
  }

  modal::Array<double> x(at(n) * at(std::min(nb, columns_at_a_time)));
  modal::Array<double> mx(x.size());
  double* mass = part.mass();
  for (std::int32_t first = 0; first < nb; first += columns_at_a_time) {
    const std::int32_t width = std::min(columns_at_a_time, nb - first);
    std::fill(x.begin(), x.end(), 0.0);
    for (std::int32_t c = 0; c < width; ++c) {
      x[at(c) * at(n) + at(interior() + first + c)] = 1.0;
    }
    factor_.extend(width, x.data());
    modal::multiply(structure_.mass, width, x.data(), mx.data());
    modal::inner_products(n, count, modes_.mode.data(), width, mx.data(), part.coupling() + at(first) * at(count));
    factor_.condense(width, mx.data());
    for (std::int32_t c = 0; c < width; ++c) {
      const double* column = mx.data() + at(c) * at(n);
      mass = std::copy(column + interior() + first + c, column + n, mass);
    }
  }
  return part;
}

modal::Array<double> Substructure::expanded(std::int32_t columns, std::span<const double> coordinates) const {
  const std::int32_t n = order();
  const std::int32_t nb = interface();
  const auto count = static_cast<std::int32_t>(modes_.eigenvalue.size());
  modal::Array<double> x(at(n) * at(columns), 0.0);
  if (nb > 0) {
    for (std::size_t c = 0; c < at(columns); ++c) {
      std::copy_n(coordinates.data() + c * at(nb), nb, x.data() + c * at(n) + at(interior()));
    }
    factor_.extend(columns, x.data());
  }
  modal::Array<double> share(x.size());
  modal::combine(n, count, modes_.mode.data(), columns, coordinates.data() + at(columns) * at(nb), share.data());
  for (std::size_t c = 0; c < at(columns); ++c) {
    modal::add_multiple(n, 1.0, share.data() + c * at(n), x.data() + c * at(n));
  }
  return x;
}

}  // namespace component
