// SPDX-License-Identifier: MIT
// The memory manager as it is described: groups of arrays on a stack, and sums. It allocates nothing.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "ZORStatus.h"

namespace zortest {

class MemoryModel {
 public:
  using Lengths = std::vector<long long>;
  static constexpr int refused = 8;
  static constexpr int mode_with_sizes = 1026;
  static constexpr long long most_bytes = 1500000;    // a larger block is not to be had
  static constexpr long long allowed_words = 128018;  // with TAV_MAX_ALLOC at 1

  struct Block {
    long long words;
    bool held;
  };
  struct Outcome {
    int status = 0;
    std::string report;  // "" where none is raised
  };

  // The bytes become words; the group is added, or the last one is given up.
  Outcome allocate(Lengths& lengths, int mode, bool separate) {
    for (long long& length : lengths) {
      if (length == 0) {
        return fault("Null Allocation Length");
      }
      length = length / 8 + 1;
    }
    long long sum = 0;
    for (const long long words : lengths) {
      sum += words;
      if (words < 0) {
        return mode != 0 ? without_figures(mode)
                         : fault("NEGATIVE ALLOCATION LENGTH : " + std::to_string(sum & 0xFFFFFFFF) + "\n");
      }
    }
    if (sum == 0) {
      return fault("Null Allocation Length");
    }
    if (!separate && mode != 0 && sum + 1 > allowed_words) {
      return {refused, ""};
    }
    std::vector<Block> blocks;
    if (!separate && can_be_had(sum)) {
      blocks.push_back({sum, true});
    } else {
      for (const long long words : lengths) {
        if (mode != 0 && words + 1 > allowed_words) {
          return too_large(mode, words, allowed_words);
        }
        if (!can_be_had(words)) {
          const auto wanted = static_cast<std::int32_t>(words);  // the figures have 32 bits
          const long long available = available_below(wanted);
          if (mode != 0) {
            return too_large(mode, wanted, available);
          }
          release_from(static_cast<int>(groups.size()));
          return {E_FAIL, "ERR_0302 " + kilobytes(wanted) + " " + kilobytes(available)};
        }
        blocks.push_back({words, true});
      }
    }
    used += sum;
    peak = std::max(peak, used);
    groups.push_back(blocks);
    return {};
  }

  // The group and every later one.
  void release_from(int group) {
    if (group < 1 || group > count()) {
      return;
    }
    for (int g = group; g <= count(); ++g) {
      release_alone(g);
    }
    groups.resize(static_cast<std::size_t>(group) - 1);
  }
  void release_alone(int group) {
    if (group < 1 || group > count()) {
      return;
    }
    for (Block& block : groups[static_cast<std::size_t>(group) - 1]) {
      used -= block.held ? block.words : 0;
      block = {0, false};
    }
  }
  // The last block gets another length, without a spare word.
  void resize_last(int group, long long bytes) {
    Block& last = groups[static_cast<std::size_t>(group) - 1].back();
    used -= last.words;
    last = {bytes / 8, true};
    used += last.words;
    peak = std::max(peak, used);
  }

  int count() const { return static_cast<int>(groups.size()); }

  std::vector<std::vector<Block>> groups;
  long long used = 0;
  long long peak = 0;

 private:
  static bool can_be_had(long long words) { return words * 8 + 8 <= most_bytes; }
  static std::string kilobytes(long long words) { return std::to_string(words / 128); }
  static Outcome fault(const std::string& text) { return {E_FAIL, "ERR_0001 " + text}; }
  static Outcome without_figures(int mode) {
    return {refused, (mode < 1000 ? "WARN_0" : "WARN_") + std::to_string(mode) + " no figures"};
  }
  static Outcome too_large(int mode, long long words, long long available) {
    return mode != mode_with_sizes ? without_figures(mode)
                                   : Outcome{refused, "WARN_0300 " + kilobytes(words) + " " + kilobytes(available)};
  }
  // Tries from 95% of what was wanted downward.
  static long long available_below(long long words) {
    const long long step = std::max(words * 8 / 20, 1LL);
    for (long long bytes = words * 8 - step; bytes > step; bytes -= step) {
      if (bytes <= most_bytes) {
        return bytes / 8;
      }
    }
    return 0;
  }
};

}  // namespace zortest
