// SPDX-License-Identifier: MIT
// Stands for the outside library: tells the arguments back.
#include <cstdint>

extern "C" void dpptrs(const char* uplo, const std::int32_t* n, const std::int32_t* nrhs, const double* ap, double* b,
                       const std::int32_t* ldb, std::int32_t* info);

void dpptrs(const char* uplo, const std::int32_t* n, const std::int32_t* nrhs, const double* ap, double* b,
            const std::int32_t* ldb, std::int32_t* info) {
  b[0] = *n + 1000. * *nrhs + *ap;
  b[1] += 1;
  *info = *ldb + *uplo;
}
