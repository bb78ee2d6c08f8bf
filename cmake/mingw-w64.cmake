# SPDX-License-Identifier: MIT
# Toolchain: 64-bit Windows, built on Debian with mingw-w64 (POSIX threads), its programs run under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(triple x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
set(CMAKE_RC_COMPILER ${triple}-windres)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine)

# Windows aligns a stack to 16 bytes and the compiler believes in more when it spills a 32- or 64-byte vector: the
# assembler turns every aligned move into the unaligned one, which costs nothing where the address is aligned.
set(CMAKE_C_FLAGS_INIT "-Wa,-muse-unaligned-vector-move")
set(CMAKE_CXX_FLAGS_INIT "-Wa,-muse-unaligned-vector-move")

# The compiler's runtimes go into every file, which then needs nothing but Windows.
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libgomp.a OUTPUT_VARIABLE gomp
                OUTPUT_STRIP_TRAILING_WHITESPACE)
set(OpenMP_gomp_LIBRARY ${gomp} CACHE FILEPATH "The OpenMP runtime")

# Header-only packages of the host: a folder of links, for the host's include folder holds its own C library too.
get_property(trying GLOBAL PROPERTY IN_TRY_COMPILE)
if(NOT trying)
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/packages/include)
  foreach(package hwy nlohmann CLI)
    file(CREATE_LINK /usr/include/${package} ${CMAKE_BINARY_DIR}/packages/include/${package} SYMBOLIC)
  endforeach()
endif()
set(CMAKE_FIND_ROOT_PATH /usr/${triple} ${CMAKE_BINARY_DIR}/packages)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
