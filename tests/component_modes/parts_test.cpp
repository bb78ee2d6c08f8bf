// SPDX-License-Identifier: MIT
// The joints of parts that are all in one process.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "joints/joined_mesh.h"
#include "joints/joint_candidates.h"
#include "joints/joint_map.h"
#include "structure/tapered_membrane.h"

namespace {

using modal::Mesh;

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

 private:
  std::vector<Mesh> meshes_;
  std::vector<std::vector<modal::EdgeNode>> nodes_;
  std::unique_ptr<component::JointMap> map_;
};

// A square of side 1, clamped where x = 0.
Mesh square(double x, double y) {
  Mesh mesh = modal::tapered_membrane_part(1, 1, 1, 0);
  for (auto& node : mesh.node) {
    const double depth = (5.0 - 0.4 * node[0]) / 2;
    node = {x + node[0] / 10, y + (node[1] / depth + 1) / 2};
  }
  return mesh;
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
