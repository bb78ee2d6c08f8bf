# SPDX-License-Identifier: MIT
# Writes DEFINITIONS, the module definition file for other compilers: of ALL that the linker exported the plain entry
# points. The classes stay out of it, for another compiler names and lays them out in its own way.
cmake_minimum_required(VERSION 3.25)

file(STRINGS ${ALL} lines)
set(text "LIBRARY ZORTAVMathKernel.dll\nEXPORTS\n")
foreach(line IN LISTS lines)
  if(NOT line MATCHES "^ +_Z" AND line MATCHES "^ +([A-Za-z0-9_]+) @[0-9]+$")
    string(APPEND text "    ${CMAKE_MATCH_1}\n")
  endif()
endforeach()
file(WRITE ${DEFINITIONS} "${text}")
