// SPDX-License-Identifier: MIT
// Parts, their joints and the joined problem, all in one process.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "factorization/index.h"
#include "joints/joined_mesh.h"
#include "joints/joint_candidates.h"
#include "joints/joint_map.h"
#include "joints/joint_values.h"
#include "modes/modal_solver.h"
#include "modes/reduced_eigenproblem.h"
#include "reduced/interface_solver.h"
#include "reduced/reduced_problem.h"
#include "structure/tapered_membrane.h"
#include "substructure/inverse_step.h"
#include "substructure/residual_forces.h"
#include "substructure/substructure.h"

namespace {

using modal::at;
using modal::Mesh;

struct Quiet : modal::Progress {
  void step(const char* /*phase*/, double /*done*/, double /*total*/) override {}
};

// What the ranks do, for parts that are all here.
class JoinedParts {
 public:
  explicit JoinedParts(std::vector<Mesh> meshes) : meshes_(std::move(meshes)) {
    std::vector<double> boxes;
    for (const Mesh& mesh : meshes_) {
      const auto box = component::box_of(mesh);
      boxes.insert(boxes.end(), box.begin(), box.end());
    }
    std::vector<std::vector<component::Candidate>> messages;
    for (std::size_t p = 0; p < meshes_.size(); ++p) {
      nodes_.push_back(component::joint_candidates(meshes_[p], static_cast<int>(p), boxes));
      messages.push_back(component::candidates_of(component::candidate_message(meshes_[p], nodes_[p])));
    }
    map_ = std::make_unique<component::JointMap>(messages);
  }

  const component::JointMap& map() const { return *map_; }
  std::vector<component::JointNode> joint(std::size_t p) const {
    return component::joint_of(component::joint_message(map_->of(static_cast<int>(p))));
  }
  void check_sides(std::size_t p) const { component::check_sides(meshes_[p], nodes_[p], joint(p)); }

  // Eigenvalues, and residuals over the whole, after so many steps of refinement.
  modal::ModalResult solve(int modes, int part_modes, int refinements = 0) {
    std::vector<std::vector<std::int32_t>> interface;
    std::vector<std::unique_ptr<component::Substructure>> parts;
    for (std::size_t p = 0; p < meshes_.size(); ++p) {
      check_sides(p);
      const std::int32_t interior = component::put_interface_last(meshes_[p], nodes_[p], joint(p));
      interface.push_back(component::interface_unknowns(joint(p)));
      parts.push_back(std::make_unique<component::Substructure>(modal::membrane_structure("", meshes_[p]), interior));
    }
    component::ReducedProblem reduced(interface, 2 * map_->nodes());
    for (const auto& part : parts) {
      part->find_modes(part_modes);
      EXPECT_TRUE(part->modes().none_missed);
      reduced.add({part->interface(), part->reduced().message()});
    }
    modal::ModalResult result = reduced.solve(modes);
    std::vector<modal::Array<double>> mode;
    for (std::size_t p = 0; p < parts.size(); ++p) {
      mode.push_back(parts[p]->expanded(modes, reduced.share(static_cast<int>(p), result)));
    }
    for (int i = 0; i < refinements; ++i) {
      refine(reduced, parts, interface, result.eigenvalue, mode);
    }
    component::ForceSums sums(modes, reduced.joint_unknowns());
    for (std::size_t p = 0; p < parts.size(); ++p) {
      sums.add_interface(interface[p], sums.add_part(*parts[p], result.eigenvalue, mode[p]));
    }
    result.residual = sums.residuals();
    return result;
  }

 private:
  using Parts = std::vector<std::unique_ptr<component::Substructure>>;

  static void refine(const component::ReducedProblem& reduced, const Parts& parts,
                     const std::vector<std::vector<std::int32_t>>& interface, std::vector<double>& eigenvalue,
                     std::vector<modal::Array<double>>& mode) {
    const std::size_t count = eigenvalue.size();
    const auto columns = static_cast<std::int32_t>(count);
    std::vector<component::InverseStep> steps;
    modal::Array<double> joint(at(reduced.joint_unknowns()) * count, 0.0);
    for (std::size_t p = 0; p < parts.size(); ++p) {
      steps.emplace_back(*parts[p], columns, mode[p]);
      component::add_to_joints(interface[p], count, steps[p].interface_load(), joint);
    }
    if (!joint.empty()) {
      component::InterfaceSolver(reduced.joint_stiffness()).solve(columns, joint);
    }
    std::vector<double> k(count * count, 0.0);
    std::vector<double> m(count * count, 0.0);
    for (std::size_t p = 0; p < parts.size(); ++p) {
      steps[p].solve(component::from_joints(interface[p], count, joint));
      const auto products = steps[p].products();
      for (std::size_t i = 0; i < k.size(); ++i) {
        k[i] += products[i];
        m[i] += products[k.size() + i];
      }
    }
    const auto solution = modal::solve_reduced(columns, k, m);
    eigenvalue = solution.value;
    for (std::size_t p = 0; p < parts.size(); ++p) {
      mode[p] = steps[p].combined(solution.coefficient);
    }
  }

  std::vector<Mesh> meshes_;
  std::vector<std::vector<modal::EdgeNode>> nodes_;
  std::unique_ptr<component::JointMap> map_;
};

std::vector<Mesh> membrane_parts(int nx, int ny, int parts) {
  std::vector<Mesh> meshes;
  for (int p = 0; p < parts; ++p) {
    meshes.push_back(modal::tapered_membrane_part(nx, ny, parts, p));
  }
  return meshes;
}

// A square of side 1, clamped where x = 0.
Mesh square(double x, double y) {
  Mesh mesh = modal::tapered_membrane_part(1, 1, 1, 0);
  for (auto& node : mesh.node) {
    const double depth = (5.0 - 0.4 * node[0]) / 2;
    node = {x + node[0] / 10, y + (node[1] / depth + 1) / 2};
  }
  return mesh;
}

// With every mode of every part nothing is left out: the parts are the structure, in other coordinates.
TEST(JoinedParts, AreTheStructureWhenAllPartModesAreKept) {
  constexpr int modes = 6;
  const modal::Structure whole = modal::tapered_membrane(7, 3);
  Quiet quiet;
  const auto expected = modal::find_lowest_modes(whole.stiffness, whole.mass, modes, quiet);
  for (const int parts : {1, 2, 3, 7}) {
    const auto found = JoinedParts(membrane_parts(7, 3, parts)).solve(modes, 100000);
    EXPECT_EQ(found.below_shift, found.found_below_shift);
    for (std::size_t i = 0; i < modes; ++i) {
      EXPECT_NEAR(found.eigenvalue[i], expected.eigenvalue[i], 1e-8 * expected.eigenvalue[i]) << parts << " parts";
      EXPECT_LT(found.residual[i], 1e-6) << parts << " parts, mode " << i;
    }
  }
}

// One solve of the whole by way of its parts is worth more than many part modes; without a joint too.
TEST(JoinedParts, AreRefinedByAnIterationOfTheWhole) {
  const modal::Structure whole = modal::tapered_membrane(12, 4);
  Quiet quiet;
  const auto expected = modal::find_lowest_modes(whole.stiffness, whole.mass, 6, quiet).eigenvalue;
  for (const int parts : {1, 3}) {
    double error_before = 1.0;
    double residual_before = 10.0;
    for (const int steps : {0, 1, 2}) {
      const auto found = JoinedParts(membrane_parts(12, 4, parts)).solve(6, 8, steps);
      double error = 0.0;
      for (std::size_t i = 0; i < expected.size(); ++i) {
        error = std::max(error, std::abs(found.eigenvalue[i] / expected[i] - 1.0));
      }
      EXPECT_LT(error, std::max(0.1 * error_before, 1e-7)) << parts << " parts, step " << steps;
      const double residual = *std::max_element(found.residual.begin(), found.residual.end());
      EXPECT_LT(residual, std::max(0.2 * residual_before, 1e-4)) << parts << " parts, step " << steps;
      error_before = error;
      residual_before = residual;
    }
  }
}

TEST(JoinedParts, MeetAtOnePointOfFour) {
  JoinedParts parts({square(0, 0), square(1, 0), square(0, 1), square(1, 1)});
  EXPECT_EQ(parts.map().faulty_part(), -1) << parts.map().fault();
  // All squares are clamped on their left: with them the twins on x = 1, the node in the middle among them.
  std::size_t of_three_others = 0;
  for (std::size_t p = 0; p < 4; ++p) {
    for (const auto& node : parts.joint(p)) {
      of_three_others += node.parts.size() == 3 ? 1 : 0;
      if (node.clamped) {
        EXPECT_EQ(node.number, -1) << "a clamped node is no unknown of an interface";
      }
    }
    EXPECT_NO_THROW(parts.check_sides(p));
  }
  EXPECT_EQ(of_three_others, 4U);
  EXPECT_EQ(parts.map().nodes(), 3) << "along y = 1 at x = 0.5, 1.5 and 2";
}

}  // namespace
