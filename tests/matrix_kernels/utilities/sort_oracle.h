// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace zortest {

struct Record {
  int key;
  int name;
};

// The rule for the pivot and the partition as they are documented, on whole records and by recursion.
class SortByTheRule {
 public:
  explicit SortByTheRule(std::vector<Record> records) : r_(std::move(records)) {
    sort(0, static_cast<int>(r_.size()) - 1);
  }
  const std::vector<Record>& records() const { return r_; }

 private:
  Record& at(int i) { return r_[static_cast<std::size_t>(i)]; }

  void sort(int lo, int hi) {
    if (lo >= hi) {
      return;
    }
    const int q[] = {0, 1, 0, -1};
    const int span = hi - lo;
    const int pivot = lo + span / 2 + q[step_++ % 4] * (span / 4);
    const Record record = at(pivot);
    int left = lo;
    int right = hi;
    for (; left < pivot && at(left).key <= record.key; ++left) {
    }
    for (; right > pivot && at(right).key >= record.key; --right) {
    }
    if (left != pivot || right != pivot) {
      at(pivot) = at(left);
      while (left < right) {
        if (at(right).key <= record.key) {
          at(left) = at(right);
          left += 1;
          while (left != right && at(left).key < record.key) {
            left += 1;
          }
          at(right) = at(left);  // itself when they have met
          if (left == right) {
            break;
          }
        }
        right -= 1;
      }
      at(left) = record;
    }
    if (2 * (left - lo) < span) {
      sort(lo, left - 1);
      sort(left + 1, hi);
    } else {
      sort(left + 1, hi);
      sort(lo, left - 1);
    }
  }

  std::vector<Record> r_;
  std::size_t step_ = 0;
};

}  // namespace zortest
