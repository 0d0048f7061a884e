# A room of the house is one folder, one static library and one line naming the rooms it may use.
# Includes are written from the root of the tree: #include "records/snapshot.h".

function(tarnwick_warnings target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
    -Wnon-virtual-dtor -Woverloaded-virtual -Wnull-dereference -Wformat=2 -Wimplicit-fallthrough
    -Wno-missing-field-initializers)  # records are made with designated initializers: the rest has defaults
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # False alarms of g++ 12 on std::string's operator+ in optimized builds (GCC bug 105651).
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
endfunction()

# tarnwick_room(name SOURCES a.cpp ... USES other_room ... LINKS library ...)
function(tarnwick_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;USES;LINKS" ${ARGN})
  add_library(tarnwick_${name} STATIC ${ROOM_SOURCES})
  target_include_directories(tarnwick_${name} PUBLIC ${PROJECT_SOURCE_DIR})
  foreach(used IN LISTS ROOM_USES)
    target_link_libraries(tarnwick_${name} PUBLIC tarnwick_${used})
  endforeach()
  target_link_libraries(tarnwick_${name} PRIVATE ${ROOM_LINKS})
  tarnwick_warnings(tarnwick_${name})
endfunction()
