# SPDX-License-Identifier: MIT
# Installs BUILD into FOLDER, moves the tree, and builds and runs clients against it: through CMake and through
# pkg-config, in C, C++ and Fortran.
include(${CMAKE_CURRENT_LIST_DIR}/checks.cmake)

set(first ${FOLDER}/first)
set(prefix ${FOLDER}/moved)
file(REMOVE_RECURSE ${FOLDER})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${first})
file(RENAME ${first} ${prefix})
expect_relocatable(${prefix} ${FOLDER} ${BUILD} ${SOURCE})

# Through CMake: the examples as they are installed.
set(examples ${prefix}/share/doc/ZORTAVMathKernel/examples/link)
run(${CMAKE_COMMAND} -S ${examples} -B ${FOLDER}/build -G ${GENERATOR} -DCMAKE_PREFIX_PATH=${prefix}
    -DCMAKE_C_COMPILER=${C_COMPILER} -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
    -DCMAKE_Fortran_COMPILER=${FORTRAN_COMPILER})
run(${CMAKE_COMMAND} --build ${FOLDER}/build)
run(${CMAKE_CTEST_COMMAND} --test-dir ${FOLDER}/build --no-tests=error)

# Through pkg-config.
file(GLOB_RECURSE package_file ${prefix}/ZORTAVMathKernel.pc)
get_filename_component(package_dir ${package_file} DIRECTORY)
set(ENV{PKG_CONFIG_PATH} ${package_dir})
set(ENV{PKG_CONFIG_ALLOW_SYSTEM_CFLAGS} 1)
function(ask result)
  execute_process(COMMAND ${PKG_CONFIG} ${ARGN} ZORTAVMathKernel OUTPUT_VARIABLE answer
                  OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(answer UNIX_COMMAND "${answer}")
  set(${result} ${answer} PARENT_SCOPE)
endfunction()
ask(flags --cflags)
ask(libraries --libs)
ask(library_dir --variable=libdir)
ask(fortran_module --variable=fortran_module)
set(ENV{LD_LIBRARY_PATH} ${library_dir})

set(strict -Wall -Wextra -Werror -pedantic)
run(${C_COMPILER} -std=c11 ${strict} ${flags} ${examples}/cantilever.c -o ${FOLDER}/cantilever ${libraries} -lm)
run(${FOLDER}/cantilever)
run(${CXX_COMPILER} -std=c++17 ${strict} ${flags} ${examples}/nearest_nodes.cpp -o ${FOLDER}/nearest ${libraries})
run(${FOLDER}/nearest)
foreach(program ${examples}/mass_chain ${CMAKE_CURRENT_LIST_DIR}/fortran_calls)
  get_filename_component(name ${program} NAME)
  run(${FORTRAN_COMPILER} -std=f2018 ${strict} -Wno-compare-reals -J ${FOLDER} ${fortran_module} ${program}.f90
      -o ${FOLDER}/${name} ${libraries})
  run(${FOLDER}/${name})
endforeach()

# A catalog beside the installed ones is found by the installed library.
file(GLOB_RECURSE catalog ${prefix}/ZORTAVMathKernelError_en.json)
get_filename_component(catalog_dir ${catalog} DIRECTORY)
file(WRITE ${catalog_dir}/Own_en.json "{\"ERR_0007\": {\"advice\": \"found\"}}")
set(ENV{LC_ALL} C)
execute_process(COMMAND ${PROBE} OUTPUT_VARIABLE message COMMAND_ERROR_IS_FATAL ANY)
if(NOT message STREQUAL "found\n")
  message(FATAL_ERROR "the library does not find the catalogs in ${catalog_dir}")
endif()
file(REMOVE_RECURSE ${FOLDER})
