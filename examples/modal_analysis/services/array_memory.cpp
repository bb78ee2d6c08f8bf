// SPDX-License-Identifier: MIT
#include "services/array_memory.h"

#include <algorithm>
#include <cstdio>
#include <limits>

#include "ZORTAVConfiguration.h"

namespace modal {
namespace {

constexpr int refusals_name_both_sizes = 1026;  // warning 300 with the requested and the available kilobytes
constexpr double word = 8.0;                    // bytes
constexpr double megabyte = 1e6;

std::string megabytes(double bytes) {
  char text[32];
  std::snprintf(text, sizeof text, "%.3g MB", bytes / megabyte);
  return text;
}

std::string refusal_text(double bytes) {
  std::int32_t allowed = 0;
  ehalmxc(&allowed);
  // What the manager compares with: every array counts with its spare words.
  return bytes + 2.0 * word > allowed * word
             ? "an array of " + megabytes(bytes) + " was refused: TAV_MAX_ALLOC allows " + megabytes(allowed * word)
             : "there is no memory for an array of " + megabytes(bytes);
}

}  // namespace

ArrayMemory& ArrayMemory::instance() {
  static ArrayMemory memory;
  return memory;
}

ArrayMemory::ArrayMemory() {
  manager_.SetModeWarning(refusals_name_both_sizes);
}

int ArrayMemory::request(const ZORTavTypeEncapMemory& handle, std::size_t count, std::size_t element,
                         std::size_t unit) {
  const double bytes = static_cast<double>(count) * static_cast<double>(element);
  const double units = bytes / static_cast<double>(unit);
  if (units > std::numeric_limits<int>::max()) {
    throw ArrayRefused("an array of " + megabytes(bytes) + " is larger than one request can be");
  }
  if (live_.size() == live_.capacity()) {
    live_.reserve(2 * live_.size() + 16);
  }
  int group = 0;
  if (manager_.Allocation(group, handle, static_cast<int>(units)) != 0) {
    throw ArrayRefused(refusal_text(bytes));
  }
  return group;
}

void ArrayMemory::give_back(const void* array) noexcept {
  const auto found =
      std::find_if(live_.rbegin(), live_.rend(), [array](const Live& live) { return live.array == array; });
  if (found == live_.rend()) {
    return;
  }
  if (found != live_.rbegin()) {
    manager_.Desallocation(-found->group);
    live_.erase(std::next(found).base());
    return;
  }
  live_.pop_back();
  manager_.Desallocation(live_.empty() ? 1 : live_.back().group + 1);
}

double ArrayMemory::peak_bytes() const {
  return static_cast<double>(manager_.GetMemoryUsed()) * word;
}

}  // namespace modal
