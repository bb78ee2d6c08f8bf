# SPDX-License-Identifier: MIT
# The target `documentation`: the reference of the public headers and the pages of docs/, as HTML. A warning is an error.
find_program(ZORTAV_DOXYGEN doxygen)
if(ZORTAV_DOXYGEN)
  file(GLOB documentation_pictures CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/*.svg)
  list(JOIN documentation_pictures " " documentation_pictures)
  configure_file(${PROJECT_SOURCE_DIR}/docs/Doxyfile.in ${PROJECT_BINARY_DIR}/Doxyfile @ONLY)
  add_custom_target(documentation COMMAND ${ZORTAV_DOXYGEN} ${PROJECT_BINARY_DIR}/Doxyfile
                    COMMENT "Reference in ${PROJECT_BINARY_DIR}/documentation/html/index.html" VERBATIM)
  if(ZORTAV_BUILD_TESTS AND NOT ZORTAV_SANITIZE AND NOT CMAKE_CROSSCOMPILING)
    add_test(NAME house.documentation
             COMMAND ${CMAKE_COMMAND} -DDOXYGEN=${ZORTAV_DOXYGEN} -DDOXYFILE=${PROJECT_BINARY_DIR}/Doxyfile
                     -DHTML=${PROJECT_BINARY_DIR}/documentation/html
                     -P ${PROJECT_SOURCE_DIR}/tests/house/documentation.cmake)
    set_tests_properties(house.documentation PROPERTIES COST 100)  # the longest on one processor: begun first
  endif()
endif()
