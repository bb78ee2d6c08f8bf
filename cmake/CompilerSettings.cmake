# SPDX-License-Identifier: MIT
# One interface target that every target of the house links: language level, warnings, floating-point rules.

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(WIN32)
  # A program finds the library in its own folder.
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
  set(CMAKE_SHARED_LIBRARY_PREFIX "")
  set(CMAKE_SHARED_MODULE_PREFIX "")
endif()

find_package(OpenMP REQUIRED COMPONENTS CXX)

add_library(zortav_settings INTERFACE)
target_compile_features(zortav_settings INTERFACE cxx_std_20)
# Results are contracts to the last bit: a compiler may not fuse, reorder or assume away anything.
target_compile_options(zortav_settings INTERFACE -ffp-contract=off -fno-fast-math)
target_compile_options(zortav_settings INTERFACE -Wall -Wextra -Wconversion -Wshadow)
if(ZORTAV_WARNINGS_AS_ERRORS)
  target_compile_options(zortav_settings INTERFACE -Werror)
endif()
if(ZORTAV_SANITIZE)
  target_compile_options(zortav_settings INTERFACE
                         -fsanitize=${ZORTAV_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(zortav_settings INTERFACE -fsanitize=${ZORTAV_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Instrumented code hides from g++ what is initialised; it then finds fault with the standard library itself.
    target_compile_options(zortav_settings INTERFACE -Wno-maybe-uninitialized)
  endif()
endif()
