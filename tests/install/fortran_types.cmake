# SPDX-License-Identifier: MIT
# The Fortran MODULE gives every argument of every plain entry point of LIST the type that the C header in INCLUDE gives
# it: the Fortran compiler writes the C prototypes of its interfaces, and a C compiler reads them behind the header.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
# The compiler has no C type for an array of any type: a byte stands for it.
file(READ ${MODULE} fortran)
string(REPLACE "type(*)" "integer(1)" fortran "${fortran}")
file(WRITE ${FOLDER}/module.f90 "${fortran}")
execute_process(COMMAND ${FORTRAN_COMPILER} -fsyntax-only -fc-prototypes -w ${FOLDER}/module.f90
                WORKING_DIRECTORY ${FOLDER} OUTPUT_VARIABLE prototypes COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "signed char" "void" prototypes "${prototypes}")
# Pointers to functions, and to a text that is returned, are opaque to Fortran.
string(REGEX REPLACE "[^\n]*(SetErrorLog|GetErrorLog|ehisanm) [^\n]*\n" "" prototypes "${prototypes}")

file(STRINGS ${LIST} entries)
list(FILTER entries EXCLUDE REGEX "^(_Z|Tra_|SetErrorLog$|GetErrorLog$|ehisanm$)")
foreach(entry IN LISTS entries)
  if(NOT prototypes MATCHES "[ *]${entry} \\(")
    message(SEND_ERROR "no prototype of ${entry}")
  endif()
endforeach()
file(WRITE ${FOLDER}/prototypes.c "#include \"ZORTAVMathKernel.h\"\n${prototypes}")
execute_process(COMMAND ${C_COMPILER} -std=c11 -fsyntax-only -I${INCLUDE} -I${FRAMEWORK} -I${PLATFORM}
                        ${FOLDER}/prototypes.c RESULT_VARIABLE failure ERROR_VARIABLE messages)
if(failure)
  message(FATAL_ERROR "${messages}")
endif()
