# What a build for macOS needs beyond C++: Objective-C++ and the system's frameworks. On a Mac both are there.
# Elsewhere MACOS_SDK names a folder with Frameworks/ (headers and link stubs), include/ and lib/; without it
# the files that need a framework are left out, and with them the program.
set(MACOS_SDK "" CACHE PATH "Unpacked framework headers and stubs, for a build on another system")

if(CMAKE_HOST_APPLE OR MACOS_SDK)
  set(TARNWICK_FRAMEWORKS ON)
  enable_language(OBJCXX)
  set(CMAKE_OBJCXX_STANDARD ${CMAKE_CXX_STANDARD})
  set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
  set(CMAKE_OBJCXX_EXTENSIONS OFF)
  add_compile_options($<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-arc>)
  if(MACOS_SDK)
    # The compiler's own headers come first: the folder's C headers are of another release.
    add_compile_options(
      "$<$<COMPILE_LANGUAGE:OBJCXX>:SHELL:-iframework ${MACOS_SDK}/Frameworks -idirafter ${MACOS_SDK}/include>")
    add_link_options("-F${MACOS_SDK}/Frameworks" "-L${MACOS_SDK}/lib")
  endif()
else()
  set(TARNWICK_FRAMEWORKS OFF)
endif()
