// SPDX-License-Identifier: MIT
// Makes raw allocation fail on purpose, and counts it.
#pragma once

#include <cstddef>
#include <limits>
#include <vector>

#include "ZORMemory.h"

namespace zortest {

// While it lives: the requests numbered first to last (from 1) are refused, and so is every larger one than `most`.
class MemoryRefusal {
 public:
  static constexpr int never = std::numeric_limits<int>::max();
  static constexpr std::size_t any = std::numeric_limits<std::size_t>::max();

  explicit MemoryRefusal(int first = never, int last = never, std::size_t most = any)
      : first_(first), last_(last), most_(most) {
    ZORSetMemRefusal(&MemoryRefusal::refuse, this);
  }
  MemoryRefusal(const MemoryRefusal&) = delete;
  MemoryRefusal& operator=(const MemoryRefusal&) = delete;
  ~MemoryRefusal() { ZORSetMemRefusal(nullptr, nullptr); }

  // The sizes that were asked for, in order.
  const std::vector<std::size_t>& sizes() const { return sizes_; }
  int requests() const { return static_cast<int>(sizes_.size()); }

 private:
  static bool refuse(void* context, std::size_t bytes) {
    auto& self = *static_cast<MemoryRefusal*>(context);
    self.sizes_.push_back(bytes);
    return (self.requests() >= self.first_ && self.requests() <= self.last_) || bytes > self.most_;
  }

  int first_;
  int last_;
  std::size_t most_;
  std::vector<std::size_t> sizes_;
};

}  // namespace zortest
