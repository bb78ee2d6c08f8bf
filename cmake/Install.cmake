# SPDX-License-Identifier: MIT
# What `cmake --install` puts where. Components, each of which can be installed alone with `--component`:
#
#   runtime        the shared library
#   catalogs       the message catalogs, at the place under the prefix where the library looks for them
#   development    headers in one folder, the Fortran module, the CMake package, the pkg-config file; for Windows the
#                  import library of mingw-w64 and the module definition file
#   documentation  the pages of docs/, the example clients and, where the target `documentation` was built, the reference
#
# Nothing that is installed holds an absolute path: the tree may be moved.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(modules ${PROJECT_SOURCE_DIR}/ZORTavrinOpenSoftware)
set(include_dir ${CMAKE_INSTALL_INCLUDEDIR}/ZORTAVMathKernel)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ZORTAVMathKernel)
if(WIN32)
  set(platform windows)
else()
  set(platform linux)
endif()

target_include_directories(ZORTAVMathKernel PUBLIC $<INSTALL_INTERFACE:${include_dir}>)
install(TARGETS ZORTAVMathKernel EXPORT ZORTAVMathKernel
        RUNTIME COMPONENT runtime
        LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
        ARCHIVE COMPONENT development)
if(WIN32)
  install(FILES ${ZORTAV_MODULE_DEFINITIONS} DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
endif()

# Callers see the framework's types too. Which platform a header is for is decided here, not by the caller.
foreach(folder ZORTAVMathKernel.m/include ZORFramework.m/include ZORFramework.m/include/${platform})
  file(GLOB headers CONFIGURE_DEPENDS ${modules}/${folder}/*.h)
  install(FILES ${headers} DESTINATION ${include_dir} COMPONENT development)
endforeach()
install(FILES ${modules}/ZORTAVMathKernel.m/fortran/zortav_math_kernel.f90 DESTINATION ${include_dir}
        COMPONENT development)

# Called from CMake: find_package(ZORTAVMathKernel).
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/ZORTAVMathKernelConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/ZORTAVMathKernelConfig.cmake
                              INSTALL_DESTINATION ${package_dir} PATH_VARS include_dir
                              NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZORTAVMathKernelConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZORTAVMathKernelConfig.cmake
              ${PROJECT_BINARY_DIR}/ZORTAVMathKernelConfigVersion.cmake
        DESTINATION ${package_dir} COMPONENT development)
install(EXPORT ZORTAVMathKernel NAMESPACE ZORTAVMathKernel:: FILE ZORTAVMathKernelTargets.cmake
        DESTINATION ${package_dir} COMPONENT development)

# Called from anything else: pkg-config. Paths are counted from the folder that the file lies in.
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH prefix_from_pkgconfig /prefix/${pkgconfig_dir} /prefix)
string(REGEX REPLACE "/$" "" prefix_from_pkgconfig ${prefix_from_pkgconfig})
configure_file(${CMAKE_CURRENT_LIST_DIR}/ZORTAVMathKernel.pc.in ${PROJECT_BINARY_DIR}/ZORTAVMathKernel.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/ZORTAVMathKernel.pc DESTINATION ${pkgconfig_dir} COMPONENT development)

file(GLOB catalogs CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/msgcatalog/*.json)
install(FILES ${catalogs} DESTINATION ${CMAKE_INSTALL_DATADIR}/ZORTAVMathKernel/msgcatalog COMPONENT catalogs)

file(GLOB pages CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/*.md ${PROJECT_SOURCE_DIR}/docs/*.svg)
install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md ${PROJECT_SOURCE_DIR}/LICENSE
        DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation)
install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs COMPONENT documentation)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/link DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples
        COMPONENT documentation)
install(DIRECTORY ${PROJECT_BINARY_DIR}/documentation/html DESTINATION ${CMAKE_INSTALL_DOCDIR}
        COMPONENT documentation OPTIONAL)
