# The oldest macOS that the program runs on. Before project(), which looks for the SDK; a build for macOS on
# another system names the version in its target instead.
set(TARNWICK_MINIMUM_MACOS 13.0)
if(CMAKE_HOST_APPLE)
  set(CMAKE_OSX_DEPLOYMENT_TARGET ${TARNWICK_MINIMUM_MACOS} CACHE STRING "Oldest macOS that the program runs on")
endif()
