// SPDX-License-Identifier: MIT
#include "modes/matrix_pencil.h"

#include "factorization/index.h"

namespace modal {

SymmetricMatrix shifted(const SymmetricMatrix& k, const SymmetricMatrix& m, double sigma) {
  SymmetricMatrix result;
  result.order = k.order;
  result.row_end.reserve(k.row_end.size());
  for (std::int32_t i = 1; i <= k.order; ++i) {
    std::int32_t p = k.row_end[at(i - 1)];
    std::int32_t q = m.row_end[at(i - 1)];
    // Ascending columns on both sides; past its off-diagonal entries a row counts as at its diagonal, column i.
    const auto column = [i](const SymmetricMatrix& a, std::int32_t position) {
      return position + 1 < a.row_end[at(i)] ? a.column[at(position)] : i;
    };
    for (std::int32_t done = 0; done < i;) {
      const std::int32_t in_k = column(k, p);
      const std::int32_t in_m = column(m, q);
      done = in_k < in_m ? in_k : in_m;
      double value = 0.0;
      if (in_k == done) {
        value = k.value[at(p++)];
      }
      if (in_m == done) {
        value -= sigma * m.value[at(q++)];
      }
      result.column.push_back(done);
      result.value.push_back(value);
    }
    result.row_end.push_back(static_cast<std::int32_t>(result.value.size()));
  }
  return result;
}

}  // namespace modal
