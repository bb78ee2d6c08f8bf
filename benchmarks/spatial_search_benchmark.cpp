// SPDX-License-Identifier: MIT
// The octree beside nanoflann's tree of the same points: building it, and queries for the k nearest. Points lie
// uniformly in a cube or on the surface of a sphere, 16 a leaf of ours, 10 (its default) of the peer's; query points
// are drawn as the points are. Arguments: shape (0 cube, 1 sphere), points, k.
//
// Counters: ns a point or a query; ratio = peer time / our time, above 1 when ours is faster; bytes that the octree
// takes beside the points, per point; recall, the share of the k nearest that the octree's pruning finds.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <nanoflann.hpp>
#include <random>
#include <utility>
#include <vector>

#include "ZORSamOctree.h"
#include "support/compare.h"

namespace {

constexpr std::uint32_t leaf_capacity = 16;
constexpr double smallest_diagonal = 1e-9;
constexpr std::uint32_t most_levels = 40;
constexpr std::size_t query_count = 20000;

using Points = std::vector<double>;  // x, y, z of point 0, of point 1, ...

Points some_points(std::int64_t shape, std::size_t n, unsigned seed) {
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  Points points;
  points.reserve(3 * n);
  while (points.size() < 3 * n) {
    const double p[3] = {uniform(engine), uniform(engine), uniform(engine)};
    const double radius = std::sqrt(p[0] * p[0] + p[1] * p[1] + p[2] * p[2]);
    if (shape == 0) {
      points.insert(points.end(), {p[0], p[1], p[2]});
    } else if (radius > 0.1 && radius < 1.0) {
      points.insert(points.end(), {p[0] / radius, p[1] / radius, p[2] / radius});
    }
  }
  return points;
}

class PointTree : public ZORSamNeighborTree {
 public:
  std::int32_t GetOctinfo(ZORSamOctinfo& rec) override {
    const double* point = static_cast<const double*>(data_) + 3 * static_cast<std::size_t>(rec.index);
    rec.x = point[0];
    rec.y = point[1];
    rec.z = point[2];
    return ZORSamStatusOk;
  }
  void build(const Points& points) {
    const auto n = static_cast<std::uint32_t>(points.size() / 3);
    if (Build(points.data(), n, leaf_capacity, nullptr, smallest_diagonal, most_levels) < 0) {
      std::abort();
    }
  }
};

// What the peer wants to know of the points.
struct PeerPoints {
  const Points& points;
  std::size_t kdtree_get_point_count() const { return points.size() / 3; }
  double kdtree_get_pt(std::size_t index, std::size_t axis) const { return points[3 * index + axis]; }
  template <class Box>
  bool kdtree_get_bbox(Box& /*box*/) const {
    return false;
  }
};
using PeerTree = nanoflann::KDTreeSingleIndexAdaptor<nanoflann::L2_Simple_Adaptor<double, PeerPoints>, PeerPoints, 3>;

struct Trees {
  Points points;
  PeerPoints peer_points{points};
  PointTree ours;
  std::unique_ptr<PeerTree> peer;
  double bytes = 0;

  Trees(std::int64_t shape, std::size_t n) : points(some_points(shape, n, 1)) {
    const double before = static_cast<double>(mallinfo2().uordblks);
    ours.build(points);
    bytes = (static_cast<double>(mallinfo2().uordblks) - before) / static_cast<double>(n);
    peer = std::make_unique<PeerTree>(3, peer_points);
  }
};

void build(benchmark::State& state) {
  const auto n = static_cast<std::size_t>(state.range(1));
  const Trees trees(state.range(0), n);
  std::vector<double> our_time;
  std::vector<double> peer_time;
  std::vector<double> ratio;
  std::unique_ptr<PointTree> ours;
  std::unique_ptr<PeerTree> peer;
  for (auto _ : state) {
    our_time.push_back(zorbench::seconds([&] { ours = std::make_unique<PointTree>(); },  //
                                         [&] { ours->build(trees.points); }));
    ours.reset();
    peer_time.push_back(zorbench::seconds([] {}, [&] { peer = std::make_unique<PeerTree>(3, trees.peer_points); }));
    peer.reset();
    ratio.push_back(peer_time.back() / our_time.back());
    state.SetIterationTime(our_time.back());
  }
  state.counters["ours_ns"] = zorbench::median(our_time) / static_cast<double>(n) * 1e9;
  state.counters["peer_ns"] = zorbench::median(peer_time) / static_cast<double>(n) * 1e9;
  state.counters["ratio"] = zorbench::median(ratio);
  state.counters["bytes"] = trees.bytes;
}

// Trees are kept from one k to the next.
Trees& kept_trees(const benchmark::State& state) {
  static std::map<std::pair<std::int64_t, std::int64_t>, std::unique_ptr<Trees>> kept;
  auto& trees = kept[{state.range(0), state.range(1)}];
  if (!trees) {
    trees = std::make_unique<Trees>(state.range(0), static_cast<std::size_t>(state.range(1)));
  }
  return *trees;
}

void query(benchmark::State& state) {
  Trees& trees = kept_trees(state);
  const auto n = static_cast<std::uint32_t>(state.range(1));
  const auto k = static_cast<std::size_t>(state.range(2));
  const Points queries = some_points(state.range(0), query_count, 2);
  std::vector<std::uint32_t> our_index(k * query_count);
  std::vector<std::uint32_t> peer_index(k * query_count);
  std::vector<double> square(k);
  const auto ask_ours = [&] {
    for (std::size_t q = 0; q < query_count; ++q) {
      std::uint32_t found = 0;
      trees.ours.GetNeighbors(queries[3 * q], queries[3 * q + 1], queries[3 * q + 2], static_cast<std::uint32_t>(k),
                              found, our_index.data() + k * q, square.data(), 0.0, n, 1);
    }
  };
  const auto ask_peer = [&] {
    for (std::size_t q = 0; q < query_count; ++q) {
      trees.peer->knnSearch(queries.data() + 3 * q, k, peer_index.data() + k * q, square.data());
    }
  };
  std::vector<double> our_time;
  std::vector<double> peer_time;
  std::vector<double> ratio;
  for (auto _ : state) {
    our_time.push_back(zorbench::seconds([] {}, ask_ours));
    peer_time.push_back(zorbench::seconds([] {}, ask_peer));
    ratio.push_back(peer_time.back() / our_time.back());
    state.SetIterationTime(our_time.back());
  }
  std::size_t right = 0;
  for (std::size_t q = 0; q < query_count; ++q) {
    for (std::size_t i = 0; i < k; ++i) {
      const auto first = our_index.begin() + static_cast<std::ptrdiff_t>(k * q);
      right += std::count(first, first + static_cast<std::ptrdiff_t>(k), peer_index[k * q + i]) != 0 ? 1 : 0;
    }
  }
  state.counters["ours_ns"] = zorbench::median(our_time) / query_count * 1e9;
  state.counters["peer_ns"] = zorbench::median(peer_time) / query_count * 1e9;
  state.counters["ratio"] = zorbench::median(ratio);
  state.counters["recall"] = static_cast<double>(right) / static_cast<double>(k * query_count);
}

void clouds(benchmark::internal::Benchmark* timing) {
  timing->ArgsProduct({{0, 1}, {100000, 1000000}});
}

void clouds_and_counts(benchmark::internal::Benchmark* timing) {
  timing->ArgsProduct({{0, 1}, {100000, 1000000}, {1, 8, 32}});
}

BENCHMARK(build)->Apply(clouds)->Iterations(15)->UseManualTime();
BENCHMARK(query)->Apply(clouds_and_counts)->Iterations(15)->UseManualTime();

}  // namespace

BENCHMARK_MAIN();
