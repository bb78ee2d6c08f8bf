// SPDX-License-Identifier: MIT
// The running sums of a block of rows, on the stack.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zortav {

// Two blocks of this many sums leave half of a 32 KiB cache to the columns that pass by.
inline constexpr std::int64_t row_block = 1024;
// Factors of this many columns are formed at a time.
inline constexpr std::int64_t column_block = 64;

class RowBlock {
 public:
  // Lies as far past a cache line's boundary as `a` does, so that where one is read aligned the other is too.
  explicit RowBlock(const double* a) noexcept
      : sums_(store_ + reinterpret_cast<std::uintptr_t>(a) / sizeof(double) % line) {}
  RowBlock(const RowBlock&) = delete;
  RowBlock& operator=(const RowBlock&) = delete;

  double* data() noexcept { return sums_; }
  double& operator[](std::int64_t i) noexcept { return sums_[i]; }

 private:
  static constexpr std::size_t line = 8;
  alignas(line * sizeof(double)) double store_[static_cast<std::size_t>(row_block) + line];
  double* sums_;
};

}  // namespace zortav
