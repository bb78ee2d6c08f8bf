# SPDX-License-Identifier: MIT
# Packages, made with `cpack` in the build folder. For Debian: libzortavmathkernel1 (library and catalogs), and
# libzortavmathkernel-dev (headers, package files, documentation, examples). For Windows: one zip with everything.
set(ZORTAV_PACKAGE_CONTACT "ZORTAVMathKernel developers <developers@zortavmathkernel.example>"
    CACHE STRING "Who answers for the packages: name <address>")
set(CPACK_PACKAGE_NAME ZORTAVMathKernel)
set(CPACK_PACKAGE_VENDOR Tavrin)
set(CPACK_PACKAGE_CONTACT ${ZORTAV_PACKAGE_CONTACT})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages-out)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_COMPONENTS_ALL runtime catalogs development documentation)

if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
  set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
  set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
  set(CPACK_PACKAGE_FILE_NAME ZORTAVMathKernel-${PROJECT_VERSION}-win64)
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                                  WORLD_READ WORLD_EXECUTE)
  set(runtime_package libzortavmathkernel${PROJECT_VERSION_MAJOR})
  set(development_package libzortavmathkernel-dev)

  # What the distribution asks of a package beside its files; not part of an ordinary install.
  string(TIMESTAMP package_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
  foreach(kind runtime development)
    set(package ${${kind}_package})
    set(folder ${PROJECT_BINARY_DIR}/debian/${package})
    configure_file(${CMAKE_CURRENT_LIST_DIR}/debian_changelog.in ${folder}/changelog @ONLY)
    configure_file(${CMAKE_CURRENT_LIST_DIR}/debian_copyright.in ${folder}/copyright @ONLY)
    execute_process(COMMAND gzip -9nf ${folder}/changelog COMMAND_ERROR_IS_FATAL ANY)
    install(FILES ${folder}/changelog.gz ${folder}/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package}
            COMPONENT debian_${kind} EXCLUDE_FROM_ALL)
  endforeach()
  list(APPEND CPACK_COMPONENTS_ALL debian_runtime debian_development)

  set(CPACK_DEB_COMPONENT_INSTALL ON)
  set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
  set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime_package})
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${development_package})
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtime_package} (= ${PROJECT_VERSION})")
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
  set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
      "Dense and packed linear algebra, front elimination, a symmetric eigen-solver,
sparse products and a nearest-neighbour search, with the same bits on every
instruction set and thread count. This package has the shared library.")
  set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
      "Headers for C and C++, the Fortran module, the CMake and pkg-config files, the
documentation and examples of ZORTAVMathKernel.")
  file(WRITE ${PROJECT_BINARY_DIR}/debian/triggers "activate-noawait ldconfig\n")
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/debian/triggers)
  set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
  foreach(component runtime catalogs debian_runtime)
    string(TOUPPER ${component} name)
    set(CPACK_COMPONENT_${name}_GROUP runtime)
  endforeach()
  foreach(component development documentation debian_development)
    string(TOUPPER ${component} name)
    set(CPACK_COMPONENT_${name}_GROUP development)
  endforeach()
endif()
include(CPack)
