# SPDX-License-Identifier: MIT
# The library exports on Windows what it exports elsewhere: the plain entry points and the trace channels by exactly
# their names, the classes by what their names mean. (The mangled names differ where a type does: a 64-bit integer is a
# long here and a long long there. The tables of virtual classes are symbols of their own only on Windows.)
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY} OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE ".*Ordinal/Name Pointer\\] Table" "" text "${text}")
string(REGEX REPLACE "\n\n.*" "" text "${text}")
string(REGEX MATCHALL "\\[ *[0-9]+\\] [A-Za-z0-9_]+" entries "${text}")
list(TRANSFORM entries REPLACE ".* " "")
set(exported ${entries})
file(STRINGS ${LIST} listed)

function(compare what exported_names listed_names)
  set(added ${exported_names})
  list(REMOVE_ITEM added ${listed_names})
  set(removed ${listed_names})
  list(REMOVE_ITEM removed ${exported_names})
  if(added OR removed OR NOT exported_names)
    message(SEND_ERROR "${what}: too many: ${added}; missing: ${removed}")
  endif()
endfunction()

# The classes' names in words, with one kind of 64-bit integer; tables left out.
function(classes result)
  set(names ${ARGN})
  list(FILTER names INCLUDE REGEX "^_Z")
  list(FILTER names EXCLUDE REGEX "^_ZT[IVS]")
  string(REGEX REPLACE "objdump([^/]*)$" "c++filt\\1" filter ${OBJDUMP})
  execute_process(COMMAND ${filter} ${names} OUTPUT_VARIABLE words COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE "long long" "long" words "${words}")
  string(STRIP "${words}" words)
  string(REPLACE "\n" ";" words "${words}")
  list(REMOVE_DUPLICATES words)
  set(${result} ${words} PARENT_SCOPE)
endfunction()

set(plain_exported ${exported})
list(FILTER plain_exported EXCLUDE REGEX "^_Z")
set(plain_listed ${listed})
list(FILTER plain_listed EXCLUDE REGEX "^_Z")
compare("plain entry points" "${plain_exported}" "${plain_listed}")

classes(classes_exported ${exported})
classes(classes_listed ${listed})
compare("classes" "${classes_exported}" "${classes_listed}")

file(STRINGS ${DEFINITIONS} defined REGEX "^ ")
list(TRANSFORM defined STRIP)
list(FILTER plain_listed EXCLUDE REGEX "^Tra_")
compare("module definition file" "${defined}" "${plain_listed}")
