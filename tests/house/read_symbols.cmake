# SPDX-License-Identifier: MIT
cmake_minimum_required(VERSION 3.25)

# The sorted names that `nm options... file` prints, those with a type letter in `omit` left out.
function(read_symbols result omit)
  execute_process(COMMAND ${NM} ${ARGN} OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[0-9a-fA-F]+ [A-Za-z] [^\n]+" lines "${text}")
  set(names)
  foreach(line IN LISTS lines)
    string(REGEX MATCH "^[0-9a-fA-F]+ ([A-Za-z]) ([^@ ]+)" ignored "${line}")
    if(NOT CMAKE_MATCH_1 IN_LIST omit)
      list(APPEND names ${CMAKE_MATCH_2})
    endif()
  endforeach()
  list(SORT names COMPARE STRING CASE SENSITIVE)
  list(REMOVE_DUPLICATES names)
  set(${result} ${names} PARENT_SCOPE)
endfunction()

# What the library exports. Weak and unique symbols are copies of inline functions and templates, which every compiler
# emits as it sees fit: no caller depends on them.
function(read_exported_symbols result)
  set(inline_copies W V u)
  read_symbols(names "${inline_copies}" -D --defined-only ${LIBRARY})
  if(NOT names)
    message(FATAL_ERROR "${LIBRARY} exports nothing")
  endif()
  set(${result} ${names} PARENT_SCOPE)
endfunction()
