// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <vector>

namespace zortest {

// The four phases as an automaton that sees one element at a time.
inline double norm(const std::vector<double>& x) {
  const double hitest = 1.304e19 / static_cast<double>(static_cast<float>(x.size()));
  int phase = 1;
  double sum = 0;
  double xmax = 0;
  for (const double xi : x) {
    const double size = std::fabs(xi);
    if (phase <= 2 && size > 8.232e-11) {
      phase = 3;
      sum = (sum * xmax) * xmax;
    }
    if (phase == 3 && size < hitest) {
      sum += xi * xi;
    } else if (phase == 3 || (phase == 1 && xi != 0)) {
      ++phase;
      sum = (sum / xi) / xi + 1;
      xmax = size;
    } else if (phase != 1) {
      const double r = size <= xmax ? xi / xmax : xmax / xi;
      sum = size <= xmax ? sum + r * r : (sum * r) * r + 1;
      xmax = size <= xmax ? xmax : size;
    }
  }
  return (phase % 2 == 1 ? 1 : xmax) * std::sqrt(sum);
}

}  // namespace zortest
