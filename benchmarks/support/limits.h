// SPDX-License-Identifier: MIT
// What this machine allows, measured in this run.
#pragma once

#include <cstddef>

namespace zorbench {

// Multiplications and additions a second: fused into one instruction, or rounded one by one. With two threads both
// cores work.
double fused_peak(int threads = 1);
double separate_peak(int threads = 1);

// Seconds from one addition to the next that needs its result.
double addition_latency();

// The traffic of a loop over vectors.
enum class Traffic {
  read,        // x
  rewrite,     // x := f(x)
  copy,        // y := x
  accumulate,  // y := y + x
  exchange     // x <-> y
};

// Bytes a second, every byte read and every byte written counted once, where all vectors together take so many bytes:
// the rate of the cache that holds them, or of the memory. The best of several loops of the widest registers.
double traffic_rate(Traffic traffic, std::size_t bytes);

}  // namespace zorbench
