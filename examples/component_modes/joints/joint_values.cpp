// SPDX-License-Identifier: MIT
#include "joints/joint_values.h"

#include "factorization/index.h"

namespace component {

using modal::at;

void add_to_joints(std::span<const std::int32_t> unknown, std::size_t columns, std::span<const double> values,
                   std::span<double> joints) {
  const std::size_t order = joints.size() / columns;
  for (std::size_t c = 0; c < columns; ++c) {
    for (std::size_t i = 0; i < unknown.size(); ++i) {
      joints[c * order + at(unknown[i])] += values[c * unknown.size() + i];
    }
  }
}

modal::Array<double> from_joints(std::span<const std::int32_t> unknown, std::size_t columns,
                                 std::span<const double> joints) {
  const std::size_t order = joints.size() / columns;
  modal::Array<double> values;
  values.reserve(unknown.size() * columns);
  for (std::size_t c = 0; c < columns; ++c) {
    for (const std::int32_t i : unknown) {
      values.push_back(joints[c * order + at(i)]);
    }
  }
  return values;
}

}  // namespace component
