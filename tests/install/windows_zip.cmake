# SPDX-License-Identifier: MIT
# Makes the zip of BUILD, unpacks it into FOLDER, looks at what is in it, and builds and runs clients against it: through
# CMake, by a plain command line, and with an import library made of the module definition file as another compiler would.
include(${CMAKE_CURRENT_LIST_DIR}/checks.cmake)

file(REMOVE_RECURSE ${FOLDER})
run(${CPACK} --config ${BUILD}/CPackConfig.cmake -B ${FOLDER}/made)
file(GLOB zip ${FOLDER}/made/*.zip)
file(ARCHIVE_EXTRACT INPUT ${zip} DESTINATION ${FOLDER})
get_filename_component(name ${zip} NAME_WLE)
set(prefix ${FOLDER}/${name})
expect_relocatable(${prefix} ${FOLDER} ${BUILD} ${SOURCE})

# Just these files; the pages and the package files are left to what uses them.
file(GLOB headers RELATIVE ${SOURCE}/ZORTavrinOpenSoftware/ZORTAVMathKernel.m/include
     ${SOURCE}/ZORTavrinOpenSoftware/ZORTAVMathKernel.m/include/*.h)
file(GLOB framework_headers RELATIVE ${SOURCE}/ZORTavrinOpenSoftware/ZORFramework.m/include
     ${SOURCE}/ZORTavrinOpenSoftware/ZORFramework.m/include/*.h)
list(APPEND headers ${framework_headers} ZORExport.h zortav_math_kernel.f90)
list(TRANSFORM headers PREPEND include/ZORTAVMathKernel/)
file(GLOB catalogs RELATIVE ${SOURCE}/msgcatalog ${SOURCE}/msgcatalog/*.json)
list(TRANSFORM catalogs PREPEND share/ZORTAVMathKernel/msgcatalog/)
set(expected bin/ZORTAVMathKernel.dll lib/libZORTAVMathKernel.dll.a lib/ZORTAVMathKernel.def
    share/doc/ZORTAVMathKernel/LICENSE share/doc/ZORTAVMathKernel/README.md share/doc/ZORTAVMathKernel/CHANGELOG.md
    ${headers} ${catalogs})
file(GLOB_RECURSE found RELATIVE ${prefix} ${prefix}/*)
list(FILTER found EXCLUDE REGEX "^(lib/(cmake|pkgconfig)|share/doc/ZORTAVMathKernel/(docs|examples|html))/")
set(missing ${expected})
list(REMOVE_ITEM missing ${found})
list(REMOVE_ITEM found ${expected})
if(missing OR found)
  message(SEND_ERROR "not in the zip: ${missing}; not meant to be there: ${found}")
endif()

# Through CMake, which puts the DLL beside the programs.
set(doc ${prefix}/share/doc/ZORTAVMathKernel)
set(examples ${doc}/examples/link)
run(${CMAKE_COMMAND} -S ${examples} -B ${FOLDER}/build -G ${GENERATOR} -DCMAKE_PREFIX_PATH=${prefix}
    -DCMAKE_SYSTEM_NAME=Windows -DCMAKE_CROSSCOMPILING_EMULATOR=${EMULATOR} -DCMAKE_EXE_LINKER_FLAGS=-static
    -DCMAKE_C_COMPILER=${C_COMPILER} -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_Fortran_COMPILER=NOTFOUND)
run(${CMAKE_COMMAND} --build ${FOLDER}/build)
run(${CMAKE_CTEST_COMMAND} --test-dir ${FOLDER}/build --no-tests=error)

# By hand; the loader is told where the DLL is.
set(ENV{WINEPATH} Z:${prefix}/bin)
set(include -I${prefix}/include/ZORTAVMathKernel)
set(strict -Wall -Wextra -Werror -pedantic)
run(${C_COMPILER} -std=c11 ${strict} ${include} ${examples}/cantilever.c -o ${FOLDER}/cantilever.exe
    -L${prefix}/lib -lZORTAVMathKernel)
run(${EMULATOR} ${FOLDER}/cantilever.exe)
# A program that carries its runtimes: the linker then looks for no import library by its short name.
run(${CXX_COMPILER} -std=c++17 -static ${strict} ${include} ${examples}/nearest_nodes.cpp
    ${prefix}/lib/libZORTAVMathKernel.dll.a -o ${FOLDER}/nearest_nodes.exe)
run(${EMULATOR} ${FOLDER}/nearest_nodes.exe)

# Through a library that knows the module definition file only.
run(${DLLTOOL} -d ${prefix}/lib/ZORTAVMathKernel.def -l ${FOLDER}/ZORTAVMathKernel.lib)
run(${C_COMPILER} -std=c11 ${strict} ${include} ${SOURCE}/examples/c_client/c_client.c -o ${FOLDER}/c_client.exe
    ${FOLDER}/ZORTAVMathKernel.lib)
run(${EMULATOR} ${FOLDER}/c_client.exe)

# The unpacked library finds the catalogs beside the unpacked ones.
file(WRITE ${prefix}/share/ZORTAVMathKernel/msgcatalog/Own_en.json "{\"ERR_0007\": {\"advice\": \"found\"}}")
file(COPY ${PROBE} DESTINATION ${prefix}/bin)
get_filename_component(probe ${PROBE} NAME)
set(ENV{LC_ALL} C)
execute_process(COMMAND ${EMULATOR} ${prefix}/bin/${probe} OUTPUT_VARIABLE message OUTPUT_STRIP_TRAILING_WHITESPACE
                COMMAND_ERROR_IS_FATAL ANY)
if(NOT message STREQUAL "found")
  message(FATAL_ERROR "the library does not find the catalogs of the zip: '${message}'")
endif()
file(REMOVE_RECURSE ${FOLDER})
