# SPDX-License-Identifier: MIT
# The target ZORTAVMathKernel::Fortran of the module source ZORTAV_FORTRAN_MODULE, where the language Fortran is enabled.
# The form of a .mod file is each compiler's own: the user's compiler makes it, once for all programs of a project.
if(CMAKE_Fortran_COMPILER_LOADED AND NOT TARGET ZORTAVMathKernel::Fortran)
  set(zortav_module_dir ${CMAKE_CURRENT_BINARY_DIR}/zortav_math_kernel)
  add_library(zortav_math_kernel_fortran STATIC EXCLUDE_FROM_ALL ${ZORTAV_FORTRAN_MODULE})
  set_target_properties(zortav_math_kernel_fortran PROPERTIES
                        Fortran_MODULE_DIRECTORY ${zortav_module_dir} POSITION_INDEPENDENT_CODE ON)
  target_include_directories(zortav_math_kernel_fortran INTERFACE ${zortav_module_dir})
  target_link_libraries(zortav_math_kernel_fortran PUBLIC ZORTAVMathKernel::ZORTAVMathKernel)
  add_library(ZORTAVMathKernel::Fortran ALIAS zortav_math_kernel_fortran)
endif()
