# The Swift side of the on-device language model, a library of its own beside the program. It takes the SDK of
# macOS 26 and the compiler's macros for its framework, which the command line tools have not although their SDK
# names the framework. So whether it can be had is found out by making it, in the very words of the build; without
# it the program has no model and is otherwise whole. The compiler is called by these words and not as a language
# of CMake, which tells it neither the oldest system nor, under Ninja, of two processors.

# What xcrun answers about the SDK of macOS; empty: there is none.
function(tarnwick_ask_xcrun answer)
  execute_process(COMMAND xcrun --sdk macosx ${ARGN} OUTPUT_VARIABLE text OUTPUT_STRIP_TRAILING_WHITESPACE
    ERROR_QUIET RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    set(text "")
  endif()
  set(${answer} "${text}" PARENT_SCOPE)
endfunction()

# The command that makes `library` of `source` for one processor. The framework is linked weakly, and not once more
# because it is imported: so the library loads on older systems, where it says that there is no model. Swift's own
# libraries are the system's since macOS 12.
function(tarnwick_swift_command command arch source library)
  set(${command} ${swiftc} -sdk ${sdk} -target ${arch}-apple-macos${TARNWICK_MINIMUM_MACOS}
    -swift-version 5 -O -parse-as-library -module-name TarnwickLanguageModel -emit-library -o ${library} ${source}
    -Xfrontend -disable-autolink-framework -Xfrontend FoundationModels
    -Xlinker -weak_framework -Xlinker FoundationModels
    -Xlinker -rpath -Xlinker /usr/lib/swift
    -Xlinker -install_name -Xlinker @rpath/libtarnwick_language_model.dylib PARENT_SCOPE)
endfunction()

# Asks once for each compiler, SDK and text of the source. TARNWICK_HAS_MODEL is the answer.
function(tarnwick_try_model arch source)
  file(SHA256 ${source} text)
  set(asked "${swiftc} ${sdk} ${arch} ${text}")
  if("${TARNWICK_MODEL_ASKED}" STREQUAL asked)
    return()
  endif()
  tarnwick_swift_command(command ${arch} ${source} ${CMAKE_BINARY_DIR}/CMakeFiles/tried_language_model.dylib)
  execute_process(COMMAND ${command} RESULT_VARIABLE status OUTPUT_VARIABLE said ERROR_VARIABLE said)
  file(WRITE ${CMAKE_BINARY_DIR}/CMakeFiles/tried_language_model.log "${said}")
  if(status EQUAL 0)
    set(has ON)
  else()
    set(has OFF)
  endif()
  set(TARNWICK_HAS_MODEL ${has} CACHE INTERNAL "The on-device language model can be built")
  set(TARNWICK_MODEL_ASKED "${asked}" CACHE INTERNAL "What that was found out with")
endfunction()

function(tarnwick_language_model source)
  if(NOT CMAKE_HOST_APPLE)
    return()
  endif()
  get_filename_component(source ${source} ABSOLUTE)
  tarnwick_ask_xcrun(swiftc --find swiftc)
  tarnwick_ask_xcrun(sdk --show-sdk-path)
  set(archs ${CMAKE_OSX_ARCHITECTURES})
  if(NOT archs)
    set(archs ${CMAKE_HOST_SYSTEM_PROCESSOR})
  endif()
  list(GET archs 0 first)
  if(swiftc AND sdk)
    tarnwick_try_model(${first} ${source})
  endif()
  if(NOT swiftc OR NOT sdk OR NOT TARNWICK_HAS_MODEL)
    message(STATUS "Without the on-device language model: that takes Xcode 26 or newer, selected with xcode-select")
    return()
  endif()

  set(library ${CMAKE_BINARY_DIR}/libtarnwick_language_model.dylib)  # beside the program, where it looks first
  foreach(arch IN LISTS archs)
    set(part ${CMAKE_CURRENT_BINARY_DIR}/language_model_${arch}.dylib)
    tarnwick_swift_command(command ${arch} ${source} ${part})
    add_custom_command(OUTPUT ${part} COMMAND ${command} DEPENDS ${source} VERBATIM
      COMMENT "Building the language model's side for ${arch}")
    list(APPEND parts ${part})
  endforeach()
  add_custom_command(OUTPUT ${library} COMMAND xcrun lipo -create ${parts} -output ${library} DEPENDS ${parts} VERBATIM)
  add_custom_target(tarnwick_language_model ALL DEPENDS ${library})
  install(PROGRAMS ${library} DESTINATION lib/tarnwick COMPONENT cli)
endfunction()
