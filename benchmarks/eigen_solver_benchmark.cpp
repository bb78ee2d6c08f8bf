// SPDX-License-Identifier: MIT
// The eigen-solver and its stages beside LAPACK's packed solver (dspev), reduction (dsptrd), QL iteration (dsteqr) and
// back-transformation (dopmtr), one thread each. The level is chosen by "TAV_INSTRUCTION_SET".
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <random>
#include <vector>

#include "ZORTAVEigenSolver.h"
#include "ZORTAVInstructionSet.h"

extern "C" {
void openblas_set_num_threads(int threads);
void dspev_(const char* jobz, const char* uplo, const int32_t* n, double* ap, double* w, double* z, const int32_t* ldz,
            double* work, int32_t* info, std::size_t jobz_length, std::size_t uplo_length);
void dsptrd_(const char* uplo, const int32_t* n, double* ap, double* d, double* e, double* tau, int32_t* info,
             std::size_t uplo_length);
void dsteqr_(const char* compz, const int32_t* n, double* d, double* e, double* z, const int32_t* ldz, double* work,
             int32_t* info, std::size_t compz_length);
void dopmtr_(const char* side, const char* uplo, const char* trans, const int32_t* m, const int32_t* n,
             const double* ap, const double* tau, double* c, const int32_t* ldc, double* work, int32_t* info,
             std::size_t side_length, std::size_t uplo_length, std::size_t trans_length);
}

namespace {

using Numbers = std::vector<double>;

constexpr int32_t ascending = 1;

struct Problem {
  explicit Problem(const benchmark::State& state)
      : n(static_cast<int32_t>(state.range(0))),
        order(static_cast<std::size_t>(n)),
        a(order * (order + 1) / 2),
        d(order),
        e(order),
        v(order * order),
        work(3 * order) {
    std::mt19937_64 engine(20240);
    for (double& x : a) {
      x = static_cast<double>(engine() >> 11) * 0x1p-52 - 1.0;
    }
  }
  void clear_vectors() { v.assign(v.size(), 0.0); }

  int32_t n;
  std::size_t order;
  Numbers a;
  Numbers d;
  Numbers e;
  Numbers v;
  Numbers work;
  int32_t status = 0;
};

// Runs a step that destroys its input; what restores the input is not timed.
template <class Restore, class Step>
void measure(benchmark::State& state, Restore restore, Step step) {
  for (auto _ : state) {
    state.PauseTiming();
    restore();
    state.ResumeTiming();
    step();
  }
}

void solve_eaxeig(benchmark::State& state) {
  Problem p(state);
  Numbers a;
  measure(
      state, [&] { a = p.a; },
      [&] { eaxeig(&p.n, &ascending, a.data(), p.d.data(), p.v.data(), p.e.data(), &p.status); });
}

void solve_dspev(benchmark::State& state) {
  Problem p(state);
  Numbers a;
  measure(
      state, [&] { a = p.a; },
      [&] { dspev_("V", "U", &p.n, a.data(), p.d.data(), p.v.data(), &p.n, p.work.data(), &p.status, 1, 1); });
}

void reduce_eaxetr(benchmark::State& state) {
  Problem p(state);
  Numbers a;
  measure(
      state, [&] { a = p.a; }, [&] { eaxetr(&p.n, a.data(), p.d.data(), p.e.data()); });
}

void reduce_dsptrd(benchmark::State& state) {
  Problem p(state);
  Numbers a;
  measure(
      state, [&] { a = p.a; },
      [&] { dsptrd_("U", &p.n, a.data(), p.d.data(), p.e.data(), p.work.data(), &p.status, 1); });
}

void iterate_eaxeql(benchmark::State& state) {
  Problem p(state);
  eaxetr(&p.n, p.a.data(), p.d.data(), p.e.data());
  Numbers d;
  Numbers e;
  measure(
      state,
      [&] {
        d = p.d;
        e = p.e;
        p.clear_vectors();
      },
      [&] { eaxeql(&p.n, d.data(), e.data(), p.v.data(), &p.status); });
}

void iterate_dsteqr(benchmark::State& state) {
  Problem p(state);
  eaxetr(&p.n, p.a.data(), p.d.data(), p.e.data());
  Numbers d;
  Numbers e;
  measure(
      state,
      [&] {
        d = p.d;
        e.assign(p.e.begin() + 1, p.e.end());
      },
      [&] { dsteqr_("I", &p.n, d.data(), e.data(), p.v.data(), &p.n, p.work.data(), &p.status, 1); });
}

void transform_eaxevp(benchmark::State& state) {
  Problem p(state);
  eaxetr(&p.n, p.a.data(), p.d.data(), p.e.data());
  measure(
      state,
      [&] {
        p.clear_vectors();
        for (std::size_t i = 0; i < p.order; ++i) {
          p.v[i * (p.order + 1)] = 1.0;
        }
      },
      [&] { eaxevp(&p.n, p.a.data(), p.v.data()); });
}

void transform_dopmtr(benchmark::State& state) {
  Problem p(state);
  Numbers tau(p.order);
  dsptrd_("U", &p.n, p.a.data(), p.d.data(), p.e.data(), tau.data(), &p.status, 1);
  measure(
      state,
      [&] {
        p.clear_vectors();
        for (std::size_t i = 0; i < p.order; ++i) {
          p.v[i * (p.order + 1)] = 1.0;
        }
      },
      [&] {
        dopmtr_("L", "U", "N", &p.n, &p.n, p.a.data(), tau.data(), p.v.data(), &p.n, p.work.data(), &p.status, 1, 1, 1);
      });
}

void orders(benchmark::internal::Benchmark* b) {
  b->Arg(100)->Arg(300)->Arg(1000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(solve_eaxeig)->Apply(orders);
BENCHMARK(solve_dspev)->Apply(orders);
BENCHMARK(reduce_eaxetr)->Apply(orders);
BENCHMARK(reduce_dsptrd)->Apply(orders);
BENCHMARK(iterate_eaxeql)->Apply(orders);
BENCHMARK(iterate_dsteqr)->Apply(orders);
BENCHMARK(transform_eaxevp)->Apply(orders);
BENCHMARK(transform_dopmtr)->Apply(orders);

}  // namespace

int main(int argc, char** argv) {
  openblas_set_num_threads(1);
  int32_t active = 0;
  int32_t highest = 0;
  int32_t reason = 0;
  ehgetisa(&active, &highest, &reason);
  benchmark::AddCustomContext("instruction set", ehisanm(&active));
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return EXIT_SUCCESS;
}
