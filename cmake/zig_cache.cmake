# The compiler inside zig remembers what it compiled, by everything that went into it, but not when it has to
# list headers for the build tool as well. So it is not asked to: tools/check-macos has everything made anew,
# and what has not changed comes out of the compiler's memory.
foreach(language IN ITEMS C CXX OBJCXX)
  set(CMAKE_DEPFILE_FLAGS_${language} "")
endforeach()
