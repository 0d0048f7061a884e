# A room of the house is one folder, one static library and one line naming the rooms it may use.
# Includes are written from the root of the tree: #include "records/snapshot.h".

# A newer compiler's new warning must not stop a user's build: only the project's own checks switch this on.
option(TARNWICK_WARNINGS_AS_ERRORS "Let a warning fail the build" OFF)

function(tarnwick_warnings target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic $<$<BOOL:${TARNWICK_WARNINGS_AS_ERRORS}>:-Werror> -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
    -Wnon-virtual-dtor -Woverloaded-virtual -Wnull-dereference -Wformat=2 -Wimplicit-fallthrough
    -Wno-missing-field-initializers)  # records are made with designated initializers: the rest has defaults
  if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    target_compile_options(${target} PRIVATE -Wthread-safety)  # reads system/thread_annotations.h
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # What g++ 12 sees in the standard library's own code once it is inlined: false alarms about std::string
    # (GCC bug 105651), std::variant and stream buffers. The debug build keeps the two checks.
    target_compile_options(${target} PRIVATE -Wno-restrict
      $<$<NOT:$<CONFIG:Debug>>:-Wno-maybe-uninitialized> $<$<NOT:$<CONFIG:Debug>>:-Wno-null-dereference>)
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

# For rooms whose code runs once in a start or a click: small, and quickly compiled, rather than fast.
function(tarnwick_small)
  foreach(target IN LISTS ARGN)
    target_compile_options(${target} PRIVATE $<$<AND:$<CONFIG:Release>,$<CXX_COMPILER_ID:GNU>>:-Os>)
  endforeach()
endfunction()
