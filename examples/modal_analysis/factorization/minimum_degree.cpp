// SPDX-License-Identifier: MIT
#include "factorization/minimum_degree.h"

#include <bit>

#include "factorization/index.h"

namespace modal {
namespace {

constexpr std::size_t word_bits = 64;

// The adjacency of the vertices still to be eliminated, as rows of bits over the part and its surroundings.
class EliminationGraph {
 public:
  EliminationGraph(std::size_t rows, std::vector<std::int32_t> weight)
      : words_((weight.size() + word_bits - 1) / word_bits),
        bits_(rows * words_),
        weight_(std::move(weight)),
        degree_(rows),
        rows_(rows) {}

  void connect(std::size_t row, std::size_t column) {
    bits_[row * words_ + column / word_bits] |= std::uint64_t{1} << (column % word_bits);
  }

  void measure(std::size_t row) {
    degree_[row] = 0;
    each_neighbour(row, [&](std::size_t column) { degree_[row] += weight_[column]; });
  }

  std::size_t least_degree() const {
    std::size_t best = rows_;
    for (std::size_t row = 0; row < rows_; ++row) {
      if (degree_[row] >= 0 && (best == rows_ || degree_[row] < degree_[best])) {
        best = row;
      }
    }
    return best;
  }

  void eliminate(std::size_t row) {
    const std::uint64_t* gone = &bits_[row * words_];
    each_neighbour(row, [&](std::size_t u) {
      if (u >= rows_) {
        return;
      }
      std::uint64_t* bits = &bits_[u * words_];
      for (std::size_t word = 0; word < words_; ++word) {
        bits[word] |= gone[word];
      }
      bits[row / word_bits] &= ~(std::uint64_t{1} << (row % word_bits));
      bits[u / word_bits] &= ~(std::uint64_t{1} << (u % word_bits));
      measure(u);
    });
    degree_[row] = eliminated;
  }

 private:
  static constexpr std::int64_t eliminated = -1;

  template <class Visit>
  void each_neighbour(std::size_t row, const Visit& visit) const {
    for (std::size_t word = 0; word < words_; ++word) {
      for (std::uint64_t bits = bits_[row * words_ + word]; bits != 0; bits &= bits - 1) {
        visit(word * word_bits + static_cast<std::size_t>(std::countr_zero(bits)));
      }
    }
  }

  std::size_t words_;
  std::vector<std::uint64_t> bits_;
  std::vector<std::int32_t> weight_;  // of the part, then of its surroundings
  std::vector<std::int64_t> degree_;
  std::size_t rows_;
};

}  // namespace

std::vector<std::int32_t> minimum_degree(const Graph& graph, std::span<const std::int32_t> part,
                                         std::vector<std::int32_t>& local) {
  std::vector<std::int32_t> column;  // part, then surroundings
  std::vector<std::int32_t> weight;
  const auto number = [&](std::int32_t v) {
    if (local[at(v)] < 0) {
      local[at(v)] = static_cast<std::int32_t>(column.size());
      column.push_back(v);
      weight.push_back(graph.vertex_weight[at(v)]);
    }
  };
  for (const std::int32_t v : part) {
    number(v);
  }
  for (const std::int32_t v : part) {
    for (const std::int32_t u : graph.neighbours(v)) {
      number(u);
    }
  }

  EliminationGraph rest(part.size(), std::move(weight));
  for (std::size_t row = 0; row < part.size(); ++row) {
    for (const std::int32_t u : graph.neighbours(part[row])) {
      rest.connect(row, at(local[at(u)]));
    }
    rest.measure(row);
  }
  std::vector<std::int32_t> order;
  order.reserve(part.size());
  while (order.size() < part.size()) {
    const std::size_t row = rest.least_degree();
    order.push_back(part[row]);
    rest.eliminate(row);
  }
  for (const std::int32_t v : column) {
    local[at(v)] = -1;
  }
  return order;
}

}  // namespace modal
