// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace zortav {

// The number of processors that the control groups of this process allow it: the least of ceil(quota / period) over
// the process's own group and every group above it; 0 when no group sets a quota.
//
// root stands before every path that is read; empty for the machine's own /proc and /sys. What cannot be read or
// understood sets no quota.
std::int32_t cpu_quota(const std::string& root);

}  // namespace zortav
