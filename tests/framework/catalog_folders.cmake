# SPDX-License-Identifier: MIT
# Catalogs are found beside the library and under its install prefix: PROBE is run with a copy of LIBRARY in FOLDER.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE ${FOLDER})
file(COPY ${LIBRARY} DESTINATION ${FOLDER}/lib FOLLOW_SYMLINK_CHAIN)
# Where there is no path to the library, the program has to lie beside it.
if(EMULATOR)
  file(COPY ${PROBE} DESTINATION ${FOLDER}/lib)
  get_filename_component(name ${PROBE} NAME)
  set(PROBE ${EMULATOR} ${FOLDER}/lib/${name})
endif()
set(ENV{LD_LIBRARY_PATH} ${FOLDER}/lib)
set(ENV{LC_ALL} C)
# From the last that is looked at to the first.
foreach(place share/ZORTAVMathKernel/msgcatalog lib/msgcatalog lib)
  file(WRITE ${FOLDER}/${place}/Own_en.json "{\"ERR_0007\": {\"advice\": \"${place}\"}}")
  execute_process(COMMAND ${PROBE} OUTPUT_VARIABLE message COMMAND_ERROR_IS_FATAL ANY)
  string(STRIP "${message}" message)
  if(NOT message STREQUAL "${place}")
    message(SEND_ERROR "found '${message}' instead of the catalog in ${place}")
  endif()
endforeach()
# On a system with several architectures the library lies one folder deeper.
if(NOT EMULATOR)
  set(ENV{LD_LIBRARY_PATH} ${FOLDER}/lib/x86_64-linux-gnu)
  file(COPY ${LIBRARY} DESTINATION $ENV{LD_LIBRARY_PATH} FOLLOW_SYMLINK_CHAIN)
  execute_process(COMMAND ${PROBE} OUTPUT_VARIABLE message COMMAND_ERROR_IS_FATAL ANY)
  if(NOT message STREQUAL "share/ZORTAVMathKernel/msgcatalog\n")
    message(SEND_ERROR "found '${message}' instead of the catalog under the prefix")
  endif()
endif()
file(REMOVE_RECURSE ${FOLDER})
