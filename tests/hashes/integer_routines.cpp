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
  eaunle(&p.columns, &p.rows, nullptr, p.ends.data(), p.entries.data(), p.transposed_ends.data(),
         p.transposed_entries.data());
  hash.add(p.transposed_ends);
  hash.add(p.transposed_entries);
}

void product_pattern(BitHash& hash, bool with_entries) {
  Pattern p;
  Integers work(p.columns + 1);
  Integers ends(p.columns + 1);
  std::int32_t total = 0;
  eaupnn(&p.columns, &p.rows, nullptr, p.ends.data(), p.entries.data(), p.transposed_ends.data(),
         p.transposed_entries.data(), work.data(), ends.data(), &total);
  hash.add(ends);
  hash.add(total);
  if (with_entries) {
    Integers entries(static_cast<std::size_t>(total));
    eaunln(&p.columns, nullptr, nullptr, p.ends.data(), p.entries.data(), p.transposed_ends.data(),
           p.transposed_entries.data(), work.data(), entries.data());
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
  const std::int32_t q = 100;
  const std::int32_t m = 60;
  const std::int32_t p = 20;
  const std::int32_t nrows = 35;
  std::vector<std::int32_t> row_of(static_cast<std::size_t>(q));
  for (std::int32_t i = 0; i < q; ++i) {
    row_of[static_cast<std::size_t>(i)] = random.integer(1, i < m ? p : nrows - p);
  }
  std::sort(row_of.begin(), row_of.begin() + m);
  std::sort(row_of.begin() + m, row_of.end());
  Integers ends(static_cast<std::size_t>(nrows) + 1);
  eaupne(&q, &m, &p, &nrows, row_of.data(), ends.data());
  hash.add(ends);
}

void xsort(BitHash& hash) {
  Random random(18);
  const std::int32_t width = 3;
  const std::int32_t key = 2;
  for (const std::int32_t count : {1, 2, 50, 1000}) {
    Integers records(static_cast<std::size_t>(width * count));
    for (std::size_t i = 0; i < records.size(); ++i) {
      records[i] = random.integer(-100, 100);  // many keys are equal: their order is fixed too
    }
    Integers work(width);
    eaxsort(records.data(), &width, &count, &key, work.data());
    hash.add(records);
  }
}

void xcpy(BitHash& hash) {
  Random random(19);
  const Array from = random_array(random, 40);
  for (const std::int32_t type : {1, 2, 3, 4, 5, -7}) {
    Array to = random_array(random, 40);
    const std::int32_t count = 23;
    eaxcpy(&type, &count, from.data(), to.data());
    hash.add(to);
  }
}

void xraz(BitHash& hash) {
  Random random(20);
  for (const std::int32_t type : {2, 3, 4, 5}) {
    Array array = random_array(random, 40);
    const std::int32_t count = 23;
    eaxraz(&type, array.data(), &count);
    hash.add(array);
  }
}

void xmac(BitHash& hash) {
  Random random(21);
  Array array = random_array(random, 10);
  const std::int32_t count = 29;
  eaxmac(array.data(), &count, "#", 1);
  hash.add(array);
}

}  // namespace

std::vector<Routine> integer_routines() {
  return {{"eaunle", unle},   {"eaupnn", upnn}, {"eaunln", unln}, {"eaupne", upne},
          {"eaxsort", xsort}, {"eaxcpy", xcpy}, {"eaxraz", xraz}, {"eaxmac", xmac}};
}

}  // namespace zortest
