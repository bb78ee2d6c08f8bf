# SPDX-License-Identifier: MIT
# Inner loops are written once and compiled once per instruction-set level. A room calls
#
#   zortav_kernel_units(vector_kernel_unit.cpp ...)
#
# and each file is compiled with ZORTAV_LEVEL = sse4, avx2 and avx512 and that level's flags. Every flag that the
# vector headers test for must be given: a missing one silently selects a lower level, which the units assert against.

find_path(ZORTAV_HIGHWAY_INCLUDE_DIR hwy/highway.h REQUIRED)

set(ZORTAV_LEVELS sse4 avx2 avx512)
set(ZORTAV_FLAGS_sse4 -msse4.2 -mpclmul -maes)
set(ZORTAV_FLAGS_avx2 ${ZORTAV_FLAGS_sse4} -mavx2 -mfma -mbmi -mbmi2 -mf16c)
set(ZORTAV_FLAGS_avx512 ${ZORTAV_FLAGS_avx2} -mavx512f -mavx512cd -mavx512bw -mavx512dq -mavx512vl)

foreach(level IN LISTS ZORTAV_LEVELS)
  add_library(zortav_kernels_${level} OBJECT)
  target_link_libraries(zortav_kernels_${level} PRIVATE zortav_settings)
  target_compile_options(zortav_kernels_${level} PRIVATE ${ZORTAV_FLAGS_${level}})
  target_compile_definitions(zortav_kernels_${level} PRIVATE
                             HWY_COMPILE_ONLY_STATIC ZORTAV_LEVEL=${level} ZORTAV_LEVEL_IS_${level})
  if(ZORTAV_SANITIZE MATCHES "fuzzer")
    # No hostile input reaches them; instrumented they take minutes to compile.
    target_compile_options(zortav_kernels_${level} PRIVATE -fno-sanitize=all -O1)
  endif()
  target_include_directories(zortav_kernels_${level} SYSTEM PRIVATE ${ZORTAV_HIGHWAY_INCLUDE_DIR})
  target_include_directories(zortav_kernels_${level} PRIVATE
                             ${PROJECT_SOURCE_DIR}/ZORTavrinOpenSoftware/ZORTAVMathKernel.m/src)
endforeach()

function(zortav_kernel_units)
  foreach(level IN LISTS ZORTAV_LEVELS)
    target_sources(zortav_kernels_${level} PRIVATE ${ARGN})
  endforeach()
endfunction()
