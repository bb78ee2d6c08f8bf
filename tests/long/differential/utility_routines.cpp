// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>

#include "ZORTAVMatrixUtilities.h"
#include "long/differential/trial.h"
#include "matrix_kernels/utilities/sort_oracle.h"

namespace zortest {
namespace {

void record_sort(Trial& t) {
  const int32_t width = t.random.integer(1, 6);
  const int32_t key = t.random.integer(1, width);
  const auto count = static_cast<std::size_t>(std::max(0, t.n));
  const auto size = static_cast<std::size_t>(width);
  const int largest = t.one_of<int>({0, 1, 2, 10, 1000, INT32_MAX});
  std::vector<std::int32_t> a(count * size);
  for (std::int32_t& x : a) {
    x = t.random.integer(-largest, largest);
  }
  const int order = t.random.integer(0, 3);  // some are sorted already, one way or the other
  std::vector<Record> records(count);
  std::vector<std::int32_t> keys(count);
  for (std::size_t r = 0; r < count; ++r) {
    keys[r] = a[r * size + static_cast<std::size_t>(key - 1)];
  }
  if (order <= 1) {
    std::sort(keys.begin(), keys.end());
  }
  if (order == 1) {
    std::reverse(keys.begin(), keys.end());
  }
  for (std::size_t r = 0; r < count; ++r) {
    a[r * size + static_cast<std::size_t>(key - 1)] = keys[r];
    records[r] = {keys[r], static_cast<int>(r)};
  }
  Integer& sorted = t.integers(a);
  Guarded<std::int32_t> work(size);
  eaxsort(sorted.data(), &width, &t.n, &key, work.data());
  t.expect_that(work.intact(), "work is written beyond its ends");
  const std::vector<Record> expected = SortByTheRule(records).records();
  for (std::size_t r = 0; r < count; ++r) {
    std::copy_n(a.data() + static_cast<std::size_t>(expected[r].name) * size, size, sorted.own.data() + r * size);
  }
}

void random_numbers(Trial& t) {
  std::int32_t seed = t.one_of<std::int32_t>({0, 1, -1, INT32_MIN, 65539, t.random.integer(-1000000000, 1000000000)});
  Integer& state = t.integers({seed});
  Reals& r = t.real(7);
  eaxrnd(state.data(), r.data());
  const auto product = static_cast<std::uint32_t>(seed) * 65539U;
  state[0] = static_cast<std::int32_t>(product == 0 ? 0x80000000U : product);
  r[0] = state[0] * 4.656612873077393e-10;
}

// Within one array, so that the ranges overlap in part of the cases.
void typed_copy(Trial& t) {
  const int32_t type = t.random.integer(-9, 9);
  const auto element = static_cast<std::size_t>(type == 3 ? 4 : type == 5 ? 8 : std::abs(type));
  const std::size_t bytes = element * static_cast<std::size_t>(std::abs(t.n));
  std::vector<std::int32_t> contents(2 * (bytes / 4) + 20);
  for (std::int32_t& x : contents) {
    x = t.random.integer(INT32_MIN / 2, INT32_MAX / 2);
  }
  Integer& array = t.integers(contents);
  const int end = static_cast<int>(contents.size() * 4 - bytes);
  const auto from = static_cast<std::size_t>(t.random.integer(0, end));
  const auto to = static_cast<std::size_t>(t.random.integer(0, end));
  auto* const given = reinterpret_cast<unsigned char*>(array.data());
  eaxcpy(&type, &t.n, given + from, given + to);
  auto* const own = reinterpret_cast<unsigned char*>(array.own.data());
  std::memcpy(own + to, reinterpret_cast<const unsigned char*>(contents.data()) + from, bytes);
}

}  // namespace

std::vector<Routine> utility_routines() {
  return {{"eaxsort", record_sort, {100, 127, 128, 255, 1000, 5000}},
          {"eaxrnd", random_numbers, {}},
          {"eaxcpy", typed_copy, {100, 1000}}};
}

}  // namespace zortest
