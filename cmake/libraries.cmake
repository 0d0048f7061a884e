# The libraries of every system. A build for another system than this one cannot link what is installed
# here: it names a folder that holds their headers and nothing else, and uses the headers alone.
# TARNWICK_FMT is the way fmt is used here.
set(TARNWICK_HEADERS "" CACHE PATH "Folder with the headers of fmt, nlohmann-json and utfcpp")

if(TARNWICK_HEADERS)
  foreach(library IN ITEMS fmt::fmt-header-only nlohmann_json::nlohmann_json utf8cpp::utf8cpp)
    add_library(${library} INTERFACE IMPORTED)
  endforeach()
  target_compile_definitions(fmt::fmt-header-only INTERFACE FMT_HEADER_ONLY)
  include_directories(SYSTEM "${TARNWICK_HEADERS}")
else()
  if(CMAKE_HOST_APPLE)
    # Homebrew is in /opt/homebrew or /usr/local, and only its own CMake looks there by itself.
    find_program(TARNWICK_BREW brew HINTS /opt/homebrew/bin /usr/local/bin)
    if(TARNWICK_BREW)
      execute_process(COMMAND ${TARNWICK_BREW} --prefix OUTPUT_VARIABLE prefix OUTPUT_STRIP_TRAILING_WHITESPACE)
      list(APPEND CMAKE_PREFIX_PATH "${prefix}")
    endif()
    find_path(TARNWICK_UTF8CPP utf8cpp/utf8.h REQUIRED)
    include_directories(SYSTEM "${TARNWICK_UTF8CPP}")
  endif()
  find_package(fmt REQUIRED)
  find_package(nlohmann_json 3.9 REQUIRED)
endif()

# Its code goes into the program where the program is to be used: on macOS because Homebrew's library is on no
# other Mac and of one kind of processor, on Linux because a library less is a quarter of the time that a start takes.
if(TARNWICK_SYSTEM STREQUAL "macos" OR CMAKE_BUILD_TYPE STREQUAL "Release")
  set(TARNWICK_FMT fmt::fmt-header-only)
else()
  set(TARNWICK_FMT fmt::fmt)
endif()
