# SPDX-License-Identifier: MIT
# The objects that are compiled once per instruction-set level define their table and nothing else that another object
# could bind to: of several copies of an inline function the linker keeps one, perhaps one that the processor cannot run.
include(${CMAKE_CURRENT_LIST_DIR}/read_symbols.cmake)

if(NOT OBJECTS)
  message(FATAL_ERROR "no kernel units to look at")
endif()
foreach(object IN LISTS OBJECTS)
  read_symbols(names "" --defined-only --extern-only ${object})
  set(others ${names})
  list(FILTER others EXCLUDE REGEX "_kernel_tableE?$")
  if(UNOPTIMISED)
    # Not inlined, but named after their level: only objects of the same level define them.
    list(FILTER others EXCLUDE REGEX "^_ZN3hwy[0-9]+N_(SSE4|AVX2|AVX3)[0-9]")
  endif()
  if(others)
    message(SEND_ERROR "${object} defines ${others}")
  endif()
  if(NOT names)
    message(SEND_ERROR "${object} defines no table")
  endif()
endforeach()
