// SPDX-License-Identifier: MIT
#include "phases/own_parts.h"

#include "factorization/index.h"
#include "failure_text.h"
#include "structure/input_error.h"

namespace component {

OwnParts::OwnParts(const PartOwners& owners, int rank, const std::vector<std::string>& files) : files_(files) {
  for (const int number : owners.parts_of(rank)) {
    parts_.push_back({number, {}, {}, 0, nullptr, {}, nullptr});
  }
}

void OwnParts::refuse(const OwnPart& part, const std::exception& error) const {
  const std::string file = files_.empty() ? "" : " (" + files_[modal::at(part.number)] + ")";
  throw modal::InputError("part " + std::to_string(part.number + 1) + file + ": " +
                          failure_text(error, &part.any_mesh()));
}

}  // namespace component
