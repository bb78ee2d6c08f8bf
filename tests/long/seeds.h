// SPDX-License-Identifier: MIT
// The seeds of the long tests: five that are fixed, and one that changes from run to run and is printed, so that a
// failure can be repeated.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace zortest {

inline int number_from_environment(const char* name, int otherwise) {
  const char* const text = std::getenv(name);
  return text == nullptr ? otherwise : std::atoi(text);
}

// ZORTAV_TEST_SEED: this one only. Else ZORTAV_TEST_SEEDS of the fixed ones (default 1), and from six on the changing one.
inline const std::vector<std::uint64_t>& seeds() {
  static const std::vector<std::uint64_t> chosen = [] {
    if (const char* const text = std::getenv("ZORTAV_TEST_SEED"); text != nullptr) {
      return std::vector<std::uint64_t>{std::strtoull(text, nullptr, 10)};
    }
    const std::vector<std::uint64_t> fixed = {20261, 31415, 27182, 16180, 14142};
    const auto count = static_cast<std::size_t>(number_from_environment("ZORTAV_TEST_SEEDS", 1));
    std::vector<std::uint64_t> some(fixed.begin(),
                                    fixed.begin() + static_cast<std::ptrdiff_t>(std::min(count, fixed.size())));
    if (count > fixed.size()) {
      some.push_back(std::random_device()());
      std::printf("the seed of this run: ZORTAV_TEST_SEED=%s\n", std::to_string(some.back()).c_str());
    }
    return some;
  }();
  return chosen;
}

}  // namespace zortest
