// SPDX-License-Identifier: MIT
// Clouds of points that an octree finds hard, and a tree over them.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "ZORSamOctree.h"
#include "support/numbers.h"

namespace zortest {

using Point = std::array<double, 3>;
using Cloud = std::vector<Point>;

enum CloudKind { uniform, clustered, collinear, coplanar, lattice, duplicates, not_finite, cloud_kinds };

inline Cloud make_cloud(int kind, int n, Random& random) {
  Cloud cloud;
  const Point direction{random.uniform(), random.uniform(), random.uniform()};
  for (int i = 0; i < n; ++i) {
    Point p{random.uniform(), random.uniform(), random.uniform()};
    for (double& x : p) {
      switch (kind) {
        case clustered:
          x = 1e-3 * x + (i % 3);
          break;
        case collinear:
          x = direction[static_cast<std::size_t>(&x - p.data())] * (i % 64);
          break;
        case coplanar:
          x = &x == &p[2] ? -2.5 : x;
          break;
        case lattice:
          x = random.integer(-3, 3);
          break;
        case duplicates:
          x = i > 0 && i % 4 != 0 ? cloud[static_cast<std::size_t>(i) / 4][static_cast<std::size_t>(&x - p.data())] : x;
          break;
        case not_finite:
          // Every other cloud is two corners and a cluster, which NaN leaves only after some levels together.
          if (n % 2 == 0) {
            x = i < 2 ? 2 * i - 1 : 1e-4 * x + (&x == p.data() ? -0.6 : 0.6);
          }
          x = i < 2 || random.integer(0, 9) > 0
                  ? x
                  : std::array{nan, nan, inf, -inf, 1e300}[random.integer(0, n % 2 == 0 ? 1 : 4) & 7];
          break;
        default:
          break;
      }
    }
    cloud.push_back(p);
  }
  return cloud;
}

// Over the points of a cloud, with what a derived class can see. It fails at the call that it is told.
template <class Base>
class CloudTree : public Base {
 public:
  std::int32_t GetOctinfo(ZORSamOctinfo& rec) override {
    const Point& p = static_cast<const Point*>(this->data_)[rec.index];
    rec.x = p[0];
    rec.y = p[1];
    rec.z = p[2];
    return rec.index == refused ? refusal : ZORSamStatusOk;
  }
  const ZORSamOctant* root() const { return this->root_; }
  using Base::GetLevelMaxNbOctants;
  using Base::GetTreeMaxNbOctants;

  static constexpr std::int32_t refusal = -77;
  std::uint32_t refused = 0xFFFFFFFF;  // entity
};

}  // namespace zortest
