// SPDX-License-Identifier: MIT
// Values on the interface of a part, interface × columns, and on all joints, joint unknowns × columns. unknown: the
// interface's as numbers among those of all joints, from 0.
#pragma once

#include <cstdint>
#include <span>

#include "services/array_memory.h"

namespace component {

void add_to_joints(std::span<const std::int32_t> unknown, std::size_t columns, std::span<const double> values,
                   std::span<double> joints);

modal::Array<double> from_joints(std::span<const std::int32_t> unknown, std::size_t columns,
                                 std::span<const double> joints);

}  // namespace component
