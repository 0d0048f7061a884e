# The Swift side of the on-device language model: built where a Swift compiler and an SDK with the framework
# are, which is on a Mac with Xcode 26 or later. Without it the program has no model and is otherwise whole.
function(tarnwick_language_model source)
  if(NOT CMAKE_HOST_APPLE)
    return()
  endif()
  set(sdk "${CMAKE_OSX_SYSROOT}")
  if(NOT sdk)
    execute_process(COMMAND xcrun --sdk macosx --show-sdk-path
      OUTPUT_VARIABLE sdk OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  endif()
  include(CheckLanguage)
  check_language(Swift)
  if(NOT CMAKE_Swift_COMPILER OR NOT EXISTS "${sdk}/System/Library/Frameworks/FoundationModels.framework")
    message(STATUS "No on-device language model: it takes a Swift compiler and the macOS 26 SDK")
    return()
  endif()
  enable_language(Swift)
  add_library(tarnwick_language_model SHARED ${source})
  # Weakly, so that the library loads on older systems, where it says that there is no model.
  target_link_options(tarnwick_language_model PRIVATE "SHELL:-Xlinker -weak_framework -Xlinker FoundationModels")
  # Beside the program, where it looks first.
  set_target_properties(tarnwick_language_model PROPERTIES LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")
  install(TARGETS tarnwick_language_model LIBRARY DESTINATION lib/tarnwick)
endfunction()
