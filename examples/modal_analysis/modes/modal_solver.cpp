// SPDX-License-Identifier: MIT
#include "modes/modal_solver.h"

#include <cmath>

#include "ZORTAVVectorKernels.h"
#include "ZORTavTimer.h"
#include "factorization/compressed_graph.h"
#include "factorization/multifrontal_factor.h"
#include "factorization/nested_dissection.h"
#include "modes/block_operations.h"
#include "modes/checked_iteration.h"
#include "modes/matrix_pencil.h"

namespace modal {
namespace {

// Times the phases; a phase that is entered again goes on.
class PhaseClock {
 public:
  template <class Work>
  void run(const char* phase, const Work& work) {
    ZORTavTimer timer;
    timer.Start();
    work();
    timer.Stop();
    for (PhaseTime& time : times_) {
      if (time.phase == phase) {
        time.elapsed += timer.GetElapsed();
        time.processor += timer.GetCPU();
        return;
      }
    }
    times_.push_back({phase, timer.GetElapsed(), timer.GetCPU()});
  }
  std::vector<PhaseTime> times() const { return times_; }

 private:
  std::vector<PhaseTime> times_;
};

void refuse_bad_input(const SymmetricMatrix& k, const SymmetricMatrix& m, int modes) {
  if (k.order != m.order) {
    throw std::invalid_argument("stiffness and mass matrix have different orders: " + std::to_string(k.order) +
                                " and " + std::to_string(m.order));
  }
  if (modes < 1 || modes > k.order) {
    throw std::invalid_argument("the number of modes must be between 1 and the order " + std::to_string(k.order) +
                                ", not " + std::to_string(modes));
  }
}

// Scales the modes to xᵀ·M·x = 1 with their component of largest magnitude positive, and measures their residuals.
void finish_modes(const SymmetricMatrix& k, const SymmetricMatrix& m, ModalResult& result) {
  const std::int32_t n = k.order;
  constexpr std::int32_t one_vector = 1;
  Array<double> mx(at(n));
  Array<double> kx(at(n));
  for (std::size_t i = 0; i < result.eigenvalue.size(); ++i) {
    double* x = result.mode.data() + i * at(n);
    multiply(m, one_vector, x, mx.data());
    double square = 0.0;
    inner_products(n, one_vector, x, one_vector, mx.data(), &square);
    const double largest = x[e_idamax(&n, x, &one_vector) - 1];
    const double factor = (largest < 0.0 ? -1.0 : 1.0) / std::sqrt(square);
    scale(n, factor, x);
    scale(n, factor, mx.data());
    multiply(k, one_vector, x, kx.data());
    const double size = norm(n, kx.data());
    add_multiple(n, -result.eigenvalue[i], mx.data(), kx.data());
    result.residual.push_back(norm(n, kx.data()) / size);
  }
}

}  // namespace

PivotRefused::PivotRefused(std::int32_t equation_, std::int32_t status_, double value_, double shift_)
    : std::runtime_error("pivot of equation " + std::to_string(equation_) + " refused with status " +
                         std::to_string(status_)),
      equation(equation_),
      status(status_),
      value(value_),
      shift(shift_) {}

FactorSummary summary(const AssemblyTree& tree) {
  FactorSummary of;
  of.fronts = static_cast<std::int32_t>(tree.front.size());
  of.largest_front = tree.largest_front;
  of.factor_entries = tree.factor_entries;
  of.stack_entries = tree.stack_entries;
  return of;
}

ModalResult find_lowest_modes(const SymmetricMatrix& stiffness, const SymmetricMatrix& mass, int modes,
                              Progress& progress) {
  refuse_bad_input(stiffness, mass, modes);
  ModalResult result;
  PhaseClock clock;

  CompressedGraph compressed;
  std::vector<std::int32_t> order;
  progress.step("ordering", 0.0, 1.0);
  clock.run("ordering", [&] {
    compressed = compress(shifted(stiffness, mass, 0.0));
    order = nested_dissection(compressed.graph);
  });
  progress.step("ordering", 1.0, 1.0);

  AssemblyTree tree;
  progress.step("symbolic", 0.0, 1.0);
  clock.run("symbolic", [&] { tree = assembly_tree(compressed, order); });
  progress.step("symbolic", 1.0, 1.0);
  result.factor = summary(tree);
  compressed = {};
  order = {};

  MultifrontalFactor factor(tree);
  clock.run("factorization", [&] {
    const Elimination elimination =
        factor.factorize(stiffness, positive_definite_rule(stiffness.order),
                         [&](double done, double total) { progress.step("factorization", done, total); });
    if (elimination.refusal) {
      const Refusal& refusal = *elimination.refusal;
      throw PivotRefused(refusal.equation, refusal.status, refusal.value, 0.0);
    }
    result.factor.operations = static_cast<double>(elimination.operations);
    result.factor.smallest_ratio = elimination.smallest_ratio;
  });

  progress.factored(result.factor);

  const auto wanted = static_cast<std::int32_t>(modes);
  SubspaceIteration iteration(stiffness, mass, factor, block_size(wanted, stiffness.order));
  const PhaseHooks hooks{[&](const std::function<void()>& work) { clock.run("iteration", work); },
                         [&](const std::function<void()>& work) {
                           progress.step("check", 0.0, 1.0);
                           clock.run("check", work);
                           progress.step("check", 1.0, 1.0);
                         },
                         [&](const IterationState& state) {
                           progress.iterated(state);
                           progress.step("iteration", state.share, 1.0);
                         }};
  const CheckedCount checked = iterate_and_check(iteration, stiffness, mass, tree, wanted, hooks);
  result.shift = checked.count.shift;
  result.below_shift = checked.count.below;
  result.found_below_shift = checked.found;
  result.iterations = iteration.iterations();

  const auto count = static_cast<std::ptrdiff_t>(modes);
  result.eigenvalue.assign(iteration.ritz_values().begin(), iteration.ritz_values().begin() + count);
  result.mode.assign(iteration.ritz_vectors().begin(), iteration.ritz_vectors().begin() + count * stiffness.order);
  finish_modes(stiffness, mass, result);
  result.phases = clock.times();
  return result;
}

}  // namespace modal
