# SPDX-License-Identifier: MIT
# Programs record the library's SONAME when they are linked: it carries the major version and changes only with it.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${READELF} -d ${LIBRARY} OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCH "SONAME[^[]*\\[([^]]*)\\]" ignored "${text}")
if(NOT CMAKE_MATCH_1 STREQUAL SONAME)
  message(FATAL_ERROR "the SONAME is '${CMAKE_MATCH_1}', expected '${SONAME}'")
endif()
