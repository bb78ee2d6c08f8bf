// SPDX-License-Identifier: MIT
// The families of routines; each measures those of its cases that the report wants.
#pragma once

#include "support/report.h"

namespace zorbench {

void elementwise(Report& report);
void searches(Report& report);
void sums(Report& report);
void matrix_vector(Report& report);
void packed_solves(Report& report);
void matrix_product(Report& report);
void sparse_product(Report& report);
void sparse_patterns(Report& report);
void record_sort(Report& report);
void front_elimination(Report& report);
void cholesky(Report& report);
void eigen_solver(Report& report);
void inversion(Report& report);
void octree(Report& report);

}  // namespace zorbench
