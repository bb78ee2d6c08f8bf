// SPDX-License-Identifier: MIT
// The one dispatcher: the level that every room's kernel table is chosen by.
#pragma once

#include <atomic>
#include <cstddef>

namespace zortav {

enum class InstructionSet : int { sse4 = 0, avx2 = 1, avx512 = 2 };
inline constexpr int instruction_set_count = 3;

namespace detail {
// Zero-initialised to the floor, so that a call made before the library's start-up code ran is merely slow.
extern std::atomic<int> active_level;
}  // namespace detail

inline InstructionSet active_instruction_set() noexcept {
  return static_cast<InstructionSet>(detail::active_level.load(std::memory_order_relaxed));
}

// The kernel tables of one room, one per level, lowest first.
template <class Table>
struct TablePerLevel {
  const Table* level[instruction_set_count];

  const Table& active() const noexcept { return *level[static_cast<std::size_t>(active_instruction_set())]; }
};

}  // namespace zortav
