// SPDX-License-Identifier: MIT
// The octree beside nanoflann's tree of the same points: building it, and queries for the k nearest. Points lie
// uniformly in a cube or on the surface of a sphere, 16 a leaf of ours, 10 (its default) of the peer's; query points
// are drawn as the points are.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <nanoflann.hpp>
#include <random>
#include <string>
#include <vector>

#include "ZORSamOctree.h"
#include "routines.h"

namespace zorbench {
namespace {

constexpr std::uint32_t leaf_capacity = 16;
constexpr double smallest_diagonal = 1e-9;
constexpr std::uint32_t most_levels = 40;
constexpr std::size_t query_count = 20000;

using Points = std::vector<double>;  // x, y, z of point 0, of point 1, ...

Points some_points(bool sphere, std::size_t n, unsigned seed) {
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  Points points;
  points.reserve(3 * n);
  while (points.size() < 3 * n) {
    const double p[3] = {uniform(engine), uniform(engine), uniform(engine)};
    const double radius = std::sqrt(p[0] * p[0] + p[1] * p[1] + p[2] * p[2]);
    if (!sphere) {
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

void build(Report& report, const Points& points, const std::string& cloud) {
  const PeerPoints peer_points{points};
  std::unique_ptr<PointTree> ours;
  std::unique_ptr<PeerTree> peer;
  Case c("octree", "build " + cloud, static_cast<double>(points.size()) / 3.0, "Mpoint/s");
  c.ours([&] { ours = std::make_unique<PointTree>(); }, [&] { ours->build(points); });
  c.peer(
      "nanoflann", "", Storage::same, [&] { peer.reset(); },
      [&] { peer = std::make_unique<PeerTree>(3, peer_points); });
  c.target(cloud.starts_with("sphere") && points.size() > 1000000 ? 1.2 : 1.5, "nanoflann");
  report.measure(c);
}

void query(Report& report, const Points& points, const std::string& cloud, std::size_t k) {
  const auto n = static_cast<std::uint32_t>(points.size() / 3);
  const PeerPoints peer_points{points};
  PointTree ours;
  ours.build(points);
  const PeerTree peer(3, peer_points);
  const Points queries = some_points(cloud.starts_with("sphere"), query_count, 2);
  std::vector<std::uint32_t> index(k);
  std::vector<double> square(k);
  Case c("octree", "k=" + std::to_string(k) + " " + cloud, query_count, "Mquery/s");
  c.ours([&] {
    for (std::size_t q = 0; q < query_count; ++q) {
      std::uint32_t found = 0;
      ours.GetNeighbors(queries[3 * q], queries[3 * q + 1], queries[3 * q + 2], static_cast<std::uint32_t>(k), found,
                        index.data(), square.data(), 0.0, n, 1);
    }
  });
  c.peer("nanoflann", "", Storage::same, [&] {
    for (std::size_t q = 0; q < query_count; ++q) {
      peer.knnSearch(queries.data() + 3 * q, k, index.data(), square.data());
    }
  });
  c.target(0.55, "nanoflann");
  report.measure(c);
}

}  // namespace

void octree(Report& report) {
  if (!report.wants("octree")) {
    return;
  }
  for (const bool sphere : {false, true}) {
    for (const std::size_t n : {std::size_t{100000}, std::size_t{1000000}}) {
      const Points points = some_points(sphere, n, 1);
      const std::string cloud = std::string(sphere ? "sphere" : "cube") + (n == 100000 ? " 1e5" : " 1e6");
      build(report, points, cloud);
      for (const std::size_t k : {std::size_t{1}, std::size_t{8}, std::size_t{32}}) {
        query(report, points, cloud, k);
      }
    }
  }
}

}  // namespace zorbench
