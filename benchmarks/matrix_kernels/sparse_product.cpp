// SPDX-License-Identifier: MIT
// eaxmvm, symmetric, beside CHOLMOD's and Eigen's product with the same matrix.
#include <cstdint>
#include <string>
#include <vector>

#include "ZORTAVSparseKernels.h"
#include "matrix_kernels/node_cube.h"
#include "routines.h"
#include "support/cholmod_peer.h"
#include "support/eigen_peer.h"
#include "support/limits.h"

namespace zorbench {
namespace {

void measure(Report& report, const NodeCube& a, std::int32_t nvec, int threads) {
  const std::int32_t symmetric = 1;
  const std::int32_t nnz = a.nnz();
  const Numbers x = some_numbers(size(a.n) * size(nvec));
  Numbers y(x.size());
  std::vector<std::int32_t> column;
  for (const std::int32_t j : a.colidx) {
    column.push_back(j - 1);
  }
  Case c("eaxmvm", "n=" + std::to_string(a.n) + " vectors=" + std::to_string(nvec), 4.0 * nnz * nvec - 2.0 * a.n * nvec,
         "Gflop/s");
  c.threads(threads);
  const double bytes = static_cast<double>((sizeof(double) + sizeof(std::int32_t)) * a.colidx.size() + 24 * x.size());
  c.limit(bytes / traffic_rate(Traffic::read, static_cast<std::size_t>(bytes)), "one pass over the data");
  if (nvec >= 4) {
    c.target(threads == 1 ? 1.2 : 2.4, "CHOLMOD");
  }
  c.ours([&] {
    eaxmvm(&symmetric, &nnz, &a.n, &a.n, &nvec, a.colidx.data(), a.rowptr.data(), a.values.data(), x.data(), y.data());
  });
  CholmodProduct cholmod(a.n, nvec, a.rowptr.data(), column.data(), a.values.data(), x.data());
  c.peer("CHOLMOD", "sdmult", Storage::same, [&] { cholmod.multiply(); });
  c.peer("Eigen", "", Storage::same, [&] {
    eigen::multiply_symmetric(a.n, nvec, a.rowptr.data(), column.data(), a.values.data(), x.data(), y.data());
  });
  report.measure(c);
}

}  // namespace

void sparse_product(Report& report) {
  if (!report.wants("eaxmvm")) {
    return;
  }
  for (const auto& [edge, unknowns] : {std::pair{12, 3}, std::pair{41, 3}, std::pair{17, 1}, std::pair{61, 1}}) {
    const NodeCube a(edge, unknowns);
    for (const std::int32_t nvec : {1, 4, 8, 16}) {
      measure(report, a, nvec, 1);
    }
    for (const std::int32_t nvec : {8, 16}) {
      measure(report, a, nvec, 2);
    }
  }
}

}  // namespace zorbench
