# SPDX-License-Identifier: MIT
# The library needs nothing but what every Windows has.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY} OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "DLL Name: [^\n]+" imports "${text}")
list(TRANSFORM imports REPLACE "DLL Name: " "")
list(TRANSFORM imports TOLOWER)
if(NOT "kernel32.dll" IN_LIST imports)
  message(FATAL_ERROR "the import table cannot be read: '${imports}'")
endif()
list(REMOVE_ITEM imports advapi32.dll kernel32.dll msvcrt.dll rpcrt4.dll)
if(imports)
  message(FATAL_ERROR "the library needs ${imports}")
endif()
