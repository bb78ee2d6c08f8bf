// SPDX-License-Identifier: MIT
// The parts that this rank works on.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "parallel/part_owners.h"
#include "structure/edge_nodes.h"
#include "structure/structure.h"
#include "substructure/inverse_step.h"
#include "substructure/substructure.h"

namespace component {

// A part on its way through the phases.
struct OwnPart {
  int number;  // from 0
  modal::Mesh mesh;
  std::vector<modal::EdgeNode> candidates;
  std::int32_t interior;                       // unknowns before those of its interface
  std::unique_ptr<Substructure> substructure;  // takes the mesh
  modal::Array<double> mode;                   // order × modes
  std::unique_ptr<InverseStep> step;           // of a refinement

  const modal::Mesh& any_mesh() const { return substructure ? substructure->structure().mesh : mesh; }
};

class OwnParts {
 public:
  // files: of all parts, or none.
  OwnParts(const PartOwners& owners, int rank, const std::vector<std::string>& files);

  // work(part), for each and for part p. What goes wrong with a part comes out as modal::InputError that names it.
  template <class Work>
  void each(const Work& work) {
    for (OwnPart& part : parts_) {
      named(part, work);
    }
  }
  template <class Work>
  auto of(int p, const Work& work) {
    return named(parts_[static_cast<std::size_t>(p - parts_.front().number)], work);
  }

  std::vector<OwnPart>::const_iterator begin() const { return parts_.begin(); }
  std::vector<OwnPart>::const_iterator end() const { return parts_.end(); }

 private:
  template <class Work>
  auto named(OwnPart& part, const Work& work) {
    try {
      return work(part);
    } catch (const std::exception& error) {
      refuse(part, error);
    }
  }
  [[noreturn]] void refuse(const OwnPart& part, const std::exception& error) const;

  std::vector<OwnPart> parts_;
  const std::vector<std::string>& files_;
};

}  // namespace component
