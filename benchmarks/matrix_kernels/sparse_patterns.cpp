// SPDX-License-Identifier: MIT
// eaunle, and eaupnn with eaunln, on meshes of bricks with 8 nodes: rows are elements, columns are nodes. "eaupnn" is
// both routines together, which take Aᵀ as given, as cs_multiply does; cholmod_aat transposes for itself.
#include <cs.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "ZORTAVSparsePatterns.h"
#include "routines.h"
#include "support/cholmod_peer.h"
#include "support/data.h"

namespace zorbench {
namespace {

using Integers = std::vector<std::int32_t>;

struct Bricks {
  std::int32_t nodes;
  std::int32_t elements;
  Integers ptr{0};
  Integers from_0;
  Integers from_1;

  explicit Bricks(std::int32_t edge) : nodes((edge + 1) * (edge + 1) * (edge + 1)), elements(edge * edge * edge) {
    const std::int32_t line = edge + 1;
    for (std::int32_t e = 0; e < elements; ++e) {
      const std::int32_t first = e % edge + line * (e / edge % edge + line * (e / edge / edge));
      for (const std::int32_t corner : {0, 1, line, line + 1}) {
        from_0.push_back(first + corner);
        from_0.push_back(first + corner + line * line);
      }
      ptr.push_back(static_cast<std::int32_t>(from_0.size()));
    }
    for (const std::int32_t node : from_0) {
      from_1.push_back(node + 1);
    }
  }
};

struct Released {
  cs_di* matrix;
  ~Released() { cs_di_spfree(matrix); }
};

// CXSparse's columns are our rows: it holds Aᵀ.
cs_di view(const Bricks& a) {
  cs_di matrix{};
  matrix.nzmax = a.ptr.back();
  matrix.m = a.nodes;
  matrix.n = a.elements;
  matrix.p = const_cast<std::int32_t*>(a.ptr.data());
  matrix.i = const_cast<std::int32_t*>(a.from_0.data());
  matrix.x = nullptr;
  matrix.nz = -1;
  return matrix;
}

void transpose(Report& report, const Bricks& a) {
  Integers ptr(size(a.nodes) + 1);
  Integers index(a.from_1.size());
  const cs_di at = view(a);
  CholmodPattern cholmod(a.elements, a.nodes, a.ptr.data(), a.from_0.data());
  Case c("eaunle", "elements=" + std::to_string(a.elements), static_cast<double>(a.ptr.back()), "Mentry/s");
  c.target(1.0, "CXSparse");
  c.target(0.8, "CHOLMOD");
  c.ours([&] { eaunle(&a.nodes, &a.elements, nullptr, a.ptr.data(), a.from_1.data(), ptr.data(), index.data()); });
  c.peer("CXSparse", "transpose", Storage::same, [&] { const Released t{cs_di_transpose(&at, 0)}; });
  c.peer("CHOLMOD", "transpose", Storage::same, [&] { cholmod.transpose(); });
  report.measure(c);
}

void square(Report& report, const Bricks& a) {
  Integers ptr_t(size(a.nodes) + 1);
  Integers index_t(a.from_1.size());
  Integers work(size(a.nodes) + 1);
  Integers ptr_p(size(a.nodes) + 1);
  CholmodPattern cholmod(a.elements, a.nodes, a.ptr.data(), a.from_0.data());
  Integers index_p(static_cast<std::size_t>(cholmod.square_entries()));
  std::int32_t total = 0;
  const cs_di at = view(a);
  const Released a_by_columns{cs_di_transpose(&at, 0)};
  Case c("eaupnn", "elements=" + std::to_string(a.elements), static_cast<double>(index_p.size()), "Mentry/s");
  c.target(1.0, "multiply+sort");
  c.target(0.8, "aat+sort");
  const auto transpose_again = [&] {
    eaunle(&a.nodes, &a.elements, nullptr, a.ptr.data(), a.from_1.data(), ptr_t.data(), index_t.data());
  };
  c.ours(transpose_again, [&] {
    eaupnn(&a.nodes, &a.elements, nullptr, a.ptr.data(), a.from_1.data(), ptr_t.data(), index_t.data(), work.data(),
           ptr_p.data(), &total);
    eaunln(&a.nodes, nullptr, nullptr, a.ptr.data(), a.from_1.data(), ptr_t.data(), index_t.data(), work.data(),
           index_p.data());
  });
  c.peer("CXSparse", "multiply", Storage::same, [&] { const Released p{cs_di_multiply(&at, a_by_columns.matrix)}; });
  c.peer("CXSparse", "multiply+sort", Storage::same, [&] {
    const Released p{cs_di_multiply(&at, a_by_columns.matrix)};
    const Released once{cs_di_transpose(p.matrix, 0)};
    const Released twice{cs_di_transpose(once.matrix, 0)};
  });
  c.peer("CHOLMOD", "aat", Storage::same, [&] { cholmod.square(false); });
  c.peer("CHOLMOD", "aat+sort", Storage::same, [&] { cholmod.square(true); });
  report.measure(c);
  if (static_cast<std::size_t>(total) != index_p.size()) {
    std::abort();
  }
}

}  // namespace

void sparse_patterns(Report& report) {
  for (const std::int32_t edge : {10, 30, 60}) {
    if (report.wants("eaunle")) {
      transpose(report, Bricks(edge));
    }
  }
  for (const std::int32_t edge : {10, 30, 60}) {
    if (report.wants("eaupnn")) {
      square(report, Bricks(edge));
    }
  }
}

}  // namespace zorbench
