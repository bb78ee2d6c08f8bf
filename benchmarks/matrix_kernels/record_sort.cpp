// SPDX-License-Identifier: MIT
// eaxsort: records of one, two and four integers in random order, beside std::sort of the same records.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "ZORTAVMatrixUtilities.h"
#include "routines.h"

namespace zorbench {
namespace {

template <std::size_t width>
void measure(Report& report, std::int32_t count) {
  using Record = std::array<std::int32_t, width>;
  // Short arrays by the hundred, all different: the processor would remember the branches of one.
  const std::size_t length = static_cast<std::size_t>(count);
  const std::size_t arrays = std::max<std::size_t>(1, 100000 / length);
  std::mt19937 engine(7);
  std::vector<Record> shuffled(arrays * length);
  for (Record& record : shuffled) {
    record.fill(static_cast<std::int32_t>(engine()));
  }
  std::vector<Record> records;
  std::array<std::int32_t, width> work{};
  const std::int32_t integers = width;
  const std::int32_t key = 1;
  const auto restore = [&] { records = shuffled; };
  Case c("eaxsort", "width=" + std::to_string(width) + " n=" + std::to_string(count),
         static_cast<double>(shuffled.size()), "Mrecord/s");
  c.target(0.85, "std::sort");
  c.ours(restore, [&] {
    for (std::size_t at = 0; at < records.size(); at += length) {
      eaxsort(records[at].data(), &integers, &count, &key, work.data());
    }
  });
  c.peer("std::sort", "", Storage::same, restore, [&] {
    for (Record* at = records.data(); at != records.data() + records.size(); at += length) {
      std::sort(at, at + length, [](const Record& a, const Record& b) { return a[0] < b[0]; });
    }
  });
  report.measure(c);
}

}  // namespace

void record_sort(Report& report) {
  if (!report.wants("eaxsort")) {
    return;
  }
  for (const std::int32_t count : {1000, 100000, 1000000}) {
    measure<1>(report, count);
    measure<2>(report, count);
    measure<4>(report, count);
  }
}

}  // namespace zorbench
