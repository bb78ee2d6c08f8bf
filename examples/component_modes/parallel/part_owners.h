// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "parallel/ranks.h"

namespace component {

// Which rank works on which part: neighbouring parts on one rank, as equally many as there can be. With more ranks than
// parts some ranks have none.
class PartOwners {
 public:
  PartOwners(int parts, int ranks) : parts_(parts), ranks_(ranks) {}

  int parts() const { return parts_; }
  int owner(int part) const { return static_cast<int>(std::int64_t{part} * ranks_ / parts_); }
  std::vector<int> parts_of(int rank) const {
    std::vector<int> own;
    for (int part = 0; part < parts_; ++part) {
      if (owner(part) == rank) {
        own.push_back(part);
      }
    }
    return own;
  }

 private:
  int parts_;
  int ranks_;
};

// Each part's owner makes a message of it, and the root takes them in the order of the parts, one at a time.
//   make(part) -> Array<double>;  take(part, Array<double>)
template <class Make, class Take>
void to_root(Ranks& ranks, const PartOwners& owners, const Make& make, const Take& take) {
  for (int part = 0; part < owners.parts(); ++part) {
    const int owner = owners.owner(part);
    if (ranks.is_root()) {
      take(part, owner == ranks.rank() ? make(part) : ranks.receive(owner));
    } else if (owner == ranks.rank()) {
      ranks.send(0, make(part));
    }
  }
}

// The other way round: the root makes a message for each part, its owner takes it.
template <class Make, class Take>
void from_root(Ranks& ranks, const PartOwners& owners, const Make& make, const Take& take) {
  for (int part = 0; part < owners.parts(); ++part) {
    const int owner = owners.owner(part);
    if (owner == ranks.rank()) {
      take(part, ranks.is_root() ? make(part) : ranks.receive(0));
    } else if (ranks.is_root()) {
      ranks.send(owner, make(part));
    }
  }
}

}  // namespace component
