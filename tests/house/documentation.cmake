# SPDX-License-Identifier: MIT
# The reference is made without a warning, and every link of it leads to a file that is there.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${DOXYGEN} ${DOXYFILE} COMMAND_ERROR_IS_FATAL ANY)
file(GLOB pages ${HTML}/*.html)
foreach(page IN LISTS pages)
  file(READ ${page} text)
  string(REGEX MATCHALL "(href|src|data)=\"[^\"#;]+" links "${text}")
  list(TRANSFORM links REPLACE "^[a-z]+=\"" "")
  list(REMOVE_DUPLICATES links)
  list(FILTER links EXCLUDE REGEX ":")
  foreach(link IN LISTS links)
    if(NOT EXISTS ${HTML}/${link})
      message(SEND_ERROR "${page} leads to ${link}")
    endif()
  endforeach()
endforeach()
