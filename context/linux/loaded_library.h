// A library that is loaded when something of it is asked for first, by the version that was built against: to
// link it would cost every start its loading, for facts that few checks need. Its headers are used while
// building, its functions by name. Once loaded it stays, for every thread.
#pragma once

#include <dlfcn.h>

namespace tarnwick {

class LoadedLibrary {
 public:
  // `file` without a folder, as the system's loader finds it.
  explicit LoadedLibrary(const char* file) : handle_(::dlopen(file, RTLD_NOW | RTLD_LOCAL)) {}

  // Null where the library or the function is missing.
  template <typename Function>
  Function* function(const char* name) const {
    return handle_ == nullptr ? nullptr : reinterpret_cast<Function*>(::dlsym(handle_, name));
  }

 private:
  void* handle_;
};

}  // namespace tarnwick
