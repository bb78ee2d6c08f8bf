// SPDX-License-Identifier: MIT
// The symmetric sparse product beside cholmod_sdmult, on the same matrix: a cube of nodes, each linked to its 26
// neighbours, with one or three unknowns a node. Arguments: nodes along an edge, unknowns a node, vectors, threads.
// The counter "entries" is stored entries times vectors a second.
#include <benchmark/benchmark.h>
#include <cholmod.h>
#include <omp.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <utility>
#include <vector>

#include "ZORTAVSparseKernels.h"

namespace {

struct LowerRows {
  std::int32_t n = 0;
  std::vector<std::int32_t> colidx;
  std::vector<std::int32_t> rowptr{0};
  std::vector<double> values;

  LowerRows(int edge, int unknowns) : n(edge * edge * edge * unknowns) {
    for (int node = 0; node < edge * edge * edge; ++node) {
      for (int u = 0; u < unknowns; ++u) {
        add_neighbours(node, edge, unknowns);
        for (int w = 0; w <= u; ++w) {
          add(node * unknowns + w);
        }
        values.back() = 27.0 * unknowns;
        rowptr.push_back(static_cast<std::int32_t>(colidx.size()));
      }
    }
  }
  std::int32_t nnz() const { return static_cast<std::int32_t>(colidx.size()); }

 private:
  void add(int column) {
    colidx.push_back(column + 1);
    values.push_back(-1.0 + 1e-3 * (column % 97));
  }
  void add_neighbours(int node, int edge, int unknowns) {
    const int at[3] = {node % edge, node / edge % edge, node / edge / edge};
    for (int k = -1; k <= 1; ++k) {
      for (int j = -1; j <= 1; ++j) {
        for (int i = -1; i <= 1; ++i) {
          const bool inside = at[0] + i >= 0 && at[0] + i < edge && at[1] + j >= 0 && at[1] + j < edge &&
                              at[2] + k >= 0 && at[2] + k < edge;
          const int other = node + i + edge * (j + edge * k);
          for (int w = 0; inside && other < node && w < unknowns; ++w) {
            add(other * unknowns + w);
          }
        }
      }
    }
  }
};

std::vector<double> some_vectors(std::size_t length) {
  std::vector<double> x(length);
  for (std::size_t at = 0; at < length; ++at) {
    x[at] = std::cos(static_cast<double>(at));
  }
  return x;
}

struct Problem {
  LowerRows a;
  std::int32_t nvec;
  std::vector<double> x;
  std::vector<double> y;

  explicit Problem(const benchmark::State& state)
      : a(static_cast<int>(state.range(0)), static_cast<int>(state.range(1))),
        nvec(static_cast<std::int32_t>(state.range(2))),
        x(some_vectors(static_cast<std::size_t>(a.n) * static_cast<std::size_t>(nvec))),
        y(x.size()) {
    omp_set_num_threads(static_cast<int>(state.range(3)));
  }
  void count(benchmark::State& state) const {
    state.counters["entries"] =
        benchmark::Counter(static_cast<double>(a.nnz()) * nvec, benchmark::Counter::kIsIterationInvariantRate);
  }
};

void product(Problem& problem) {
  const std::int32_t symmetric = 1;
  const std::int32_t nnz = problem.a.nnz();
  eaxmvm(&symmetric, &nnz, &problem.a.n, &problem.a.n, &problem.nvec, problem.a.colidx.data(), problem.a.rowptr.data(),
         problem.a.values.data(), problem.x.data(), problem.y.data());
}

void eaxmvm_symmetric(benchmark::State& state) {
  Problem problem(state);
  while (state.KeepRunning()) {
    product(problem);
    benchmark::ClobberMemory();
  }
  problem.count(state);
}

// CHOLMOD counts from 0 and takes the same arrays as the columns of an upper triangle.
void cholmod_symmetric(benchmark::State& state) {
  Problem problem(state);
  cholmod_common common;
  cholmod_start(&common);
  const auto n = static_cast<std::size_t>(problem.a.n);
  const auto vectors = static_cast<std::size_t>(problem.nvec);
  cholmod_sparse* a = cholmod_allocate_sparse(n, n, problem.a.colidx.size(), 1, 1, 1, CHOLMOD_REAL, &common);
  cholmod_dense* x = cholmod_zeros(n, vectors, CHOLMOD_REAL, &common);
  cholmod_dense* y = cholmod_zeros(n, vectors, CHOLMOD_REAL, &common);
  if (a == nullptr || x == nullptr || y == nullptr) {
    std::abort();
  }
  for (std::size_t p = 0; p < problem.a.colidx.size(); ++p) {
    static_cast<std::int32_t*>(a->i)[p] = problem.a.colidx[p] - 1;
    static_cast<double*>(a->x)[p] = problem.a.values[p];
  }
  for (std::size_t i = 0; i <= n; ++i) {
    static_cast<std::int32_t*>(a->p)[i] = problem.a.rowptr[i];
  }
  for (std::size_t at = 0; at < problem.x.size(); ++at) {
    static_cast<double*>(x->x)[at] = problem.x[at];
  }
  double one[2] = {1.0, 0.0};
  double zero[2] = {0.0, 0.0};
  while (state.KeepRunning()) {
    cholmod_sdmult(a, 0, one, zero, x, y, &common);
    benchmark::ClobberMemory();
  }
  product(problem);
  for (std::size_t at = 0; at < problem.y.size(); ++at) {
    if (std::abs(static_cast<double*>(y->x)[at] - problem.y[at]) > 1e-9) {
      state.SkipWithError("the two products differ");
    }
  }
  problem.count(state);
  cholmod_free_sparse(&a, &common);
  cholmod_free_dense(&x, &common);
  cholmod_free_dense(&y, &common);
  cholmod_finish(&common);
}

void one_thread(benchmark::internal::Benchmark* timing) {
  for (const int nvec : {1, 2, 3, 4, 8}) {
    for (const auto& [edge, unknowns] : {std::pair{12, 3}, std::pair{41, 3}, std::pair{17, 1}, std::pair{61, 1}}) {
      timing->Args({edge, unknowns, nvec, 1});
    }
  }
}

void two_threads(benchmark::internal::Benchmark* timing) {
  for (const auto& [edge, unknowns] : {std::pair{12, 3}, std::pair{41, 3}, std::pair{17, 1}, std::pair{61, 1}}) {
    timing->Args({edge, unknowns, 8, 2});
  }
}

BENCHMARK(eaxmvm_symmetric)->Apply(one_thread)->Apply(two_threads)->UseRealTime();
BENCHMARK(cholmod_symmetric)->Apply(one_thread)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
