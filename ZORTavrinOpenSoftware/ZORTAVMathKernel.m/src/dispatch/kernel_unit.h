// SPDX-License-Identifier: MIT
// To be included first by every unit that is compiled once per instruction-set level (cmake/KernelUnits.cmake).
//
// A unit puts everything but its table into an anonymous namespace inside namespace zortav::ZORTAV_LEVEL and includes
// no standard container: an inline function shared with the rest of the library could be the copy that the linker
// keeps, compiled for a processor that the caller does not have.
#pragma once

#include <hwy/highway.h>

#if defined(ZORTAV_LEVEL_IS_sse4)
static_assert(HWY_TARGET == HWY_SSE4, "the compiler flags of this unit do not select SSE4.2");
#elif defined(ZORTAV_LEVEL_IS_avx2)
static_assert(HWY_TARGET == HWY_AVX2, "the compiler flags of this unit do not select AVX2 with FMA");
#elif defined(ZORTAV_LEVEL_IS_avx512)
static_assert(HWY_TARGET == HWY_AVX3, "the compiler flags of this unit do not select AVX-512");
#else
#error "kernel units are compiled through zortav_kernel_units() of cmake/KernelUnits.cmake"
#endif

namespace zortav::ZORTAV_LEVEL {
namespace hn = hwy::HWY_NAMESPACE;
}
