# SPDX-License-Identifier: MIT
# Every public header compiles alone and without a warning: those of the plain entry points as C11 and C++17, those of
# the classes as C++17.
cmake_minimum_required(VERSION 3.25)

function(compile compiler language standard header)
  execute_process(COMMAND ${compiler} -x ${language} -std=${standard} -Wall -Wextra -Werror -pedantic -fsyntax-only
                          -I${INCLUDE} -I${FRAMEWORK} -I${PLATFORM} -include ${header} /dev/null
                  RESULT_VARIABLE failure ERROR_VARIABLE messages)
  if(failure)
    message(SEND_ERROR "${header} as ${standard}:\n${messages}")
  endif()
endfunction()

file(GLOB headers ${INCLUDE}/*.h ${FRAMEWORK}/*.h)
set(plain 0)
foreach(header IN LISTS headers)
  compile(${CXX_COMPILER} c++ c++17 ${header})
  file(READ ${header} text)
  if(text MATCHES "ZORTAVEntryPoint\\.h|ZORTAV_ENTRY_POINT_H|ZORTAV_MATH_KERNEL_H")
    compile(${C_COMPILER} c c11 ${header})
    math(EXPR plain "${plain} + 1")
  endif()
endforeach()
if(plain EQUAL 0)
  message(FATAL_ERROR "no headers of plain entry points in ${INCLUDE}")
endif()
