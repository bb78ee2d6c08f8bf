// SPDX-License-Identifier: MIT
// Replaces the allocation functions of a test program by some that can be told to refuse.
#pragma once

namespace zortest {

extern int allocations_left;  // that may fail and are served before refusals begin; negative: none is refused
extern int refusals_left;
extern bool throwing_ones_fail_too;  // else only those that return a null pointer

}  // namespace zortest
