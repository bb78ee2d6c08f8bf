// SPDX-License-Identifier: MIT
// Patterns, records, typed clears and copies.
#include <algorithm>

#include "ZORTAVMathKernel.h"
#include "hashes/bit_hash.h"

namespace zortest {
namespace {

// A pattern of 60 rows over 40 columns, columns in any order, and what the three pattern routines make of it.
struct Pattern {
  static constexpr std::int32_t rows = 60;
  static constexpr std::int32_t columns = 40;

  Pattern() {
    Random random(16);
    for (std::int32_t i = 0; i < rows; ++i) {
      for (std::int32_t e = random.integer(0, 6); e > 0; --e) {
        entries.push_back(random.integer(1, columns));
      }
      ends.push_back(static_cast<std::int32_t>(entries.size()));
    }
    transposed_entries = Integers(entries.size());
  }
  std::vector<std::int32_t> ends{0};
  std::vector<std::int32_t> entries;
  Integers transposed_ends{columns + 1};
  Integers transposed_entries{0};
};

void unle(BitHash& hash) {
  Pattern p;
  by_address(eaunle, p.columns, p.rows, nullptr, p.ends, p.entries, p.transposed_ends, p.transposed_entries);
  hash.add(p.transposed_ends);
  hash.add(p.transposed_entries);
}

void product_pattern(BitHash& hash, bool with_entries) {
  Pattern p;
  Integers work(p.columns + 1);
  Integers ends(p.columns + 1);
  std::int32_t total = 0;
  by_address(eaupnn, p.columns, p.rows, nullptr, p.ends, p.entries, p.transposed_ends, p.transposed_entries, work, ends,
             total);
  hash.add(ends);
  hash.add(total);
  if (with_entries) {
    Integers entries(static_cast<std::size_t>(total));
    by_address(eaunln, p.columns, nullptr, nullptr, p.ends, p.entries, p.transposed_ends, p.transposed_entries, work,
               entries);
    hash.add(work);
    hash.add(entries);
  }
}

void upnn(BitHash& hash) {
  product_pattern(hash, false);
}

void unln(BitHash& hash) {
  product_pattern(hash, true);
}

void upne(BitHash& hash) {
  Random random(17);
  std::vector<std::int32_t> row_of(100);
  for (std::size_t i = 0; i < row_of.size(); ++i) {
    row_of[i] = random.integer(1, i < 60 ? 20 : 15);
  }
  std::sort(row_of.begin(), row_of.begin() + 60);
  std::sort(row_of.begin() + 60, row_of.end());
  Integers ends(36);
  by_address(eaupne, 100, 60, 20, 35, row_of, ends);
  hash.add(ends);
}

void xsort(BitHash& hash) {
  Random random(18);
  for (const std::int32_t count : {1, 2, 50, 1000}) {
    Integers records(static_cast<std::size_t>(3 * count));
    for (std::size_t i = 0; i < records.size(); ++i) {
      records[i] = random.integer(-100, 100);  // many keys are equal: their order is fixed too
    }
    by_address(eaxsort, records, 3, count, 2, Integers(3));
    hash.add(records);
  }
}

void xcpy(BitHash& hash) {
  Random random(19);
  const Array from = random_array(random, 40);
  for (const std::int32_t type : {1, 2, 3, 4, 5, -7}) {
    Array to = random_array(random, 40);
    by_address(eaxcpy, type, 23, from, to);
    hash.add(to);
  }
}

void xraz(BitHash& hash) {
  Random random(20);
  for (const std::int32_t type : {2, 3, 4, 5}) {
    Array array = random_array(random, 40);
    by_address(eaxraz, type, array, 23);
    hash.add(array);
  }
}

void xmac(BitHash& hash) {
  Random random(21);
  Array array = random_array(random, 10);
  by_address(eaxmac, array, 29, '#');
  hash.add(array);
}

}  // namespace

std::vector<Routine> integer_routines() {
  return {{"eaunle", unle},   {"eaupnn", upnn}, {"eaunln", unln}, {"eaupne", upne},
          {"eaxsort", xsort}, {"eaxcpy", xcpy}, {"eaxraz", xraz}, {"eaxmac", xmac}};
}

}  // namespace zortest
