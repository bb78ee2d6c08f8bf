# SPDX-License-Identifier: MIT
# The library exports exactly the committed list: a change of the binary interface is made on purpose.
include(${CMAKE_CURRENT_LIST_DIR}/read_symbols.cmake)

read_exported_symbols(exported)
if(UPDATE)
  list(JOIN exported "\n" text)
  file(WRITE ${LIST} "${text}\n")
  return()
endif()

file(STRINGS ${LIST} listed)
set(added ${exported})
list(REMOVE_ITEM added ${listed})
set(removed ${listed})
list(REMOVE_ITEM removed ${exported})
foreach(name IN LISTS added)
  message(NOTICE "+ ${name}")
endforeach()
foreach(name IN LISTS removed)
  message(NOTICE "- ${name}")
endforeach()
if(added OR removed)
  message(FATAL_ERROR "the exported symbols differ from ${LIST} (+ new, - gone); "
                      "where that is meant, build the target update_exported_symbols")
endif()
