#include <dlfcn.h>

#include <array>
#include <filesystem>
#include <string>
#include <system_error>

#include "app/cli/output.h"
#include "app/panel/panel_module.h"

namespace tarnwick::panel {
namespace {

// Either the entry or, when that is null, a sentence that says why.
struct LoadedModule {
  PanelModuleEntry entry = nullptr;
  std::string failure;
};

LoadedModule load(const std::filesystem::path& file) {
  // Stays loaded: the toolkit cannot be unloaded.
  void* module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  void* entry = module == nullptr ? nullptr : dlsym(module, panelModuleEntry);
  if (entry != nullptr) return {.entry = reinterpret_cast<PanelModuleEntry>(entry)};
  const char* reason = dlerror();  // names the file that is wrong
  return {.failure = std::string("The panel's module cannot be loaded: ") +
                     (reason == nullptr ? "it has no entry" : reason) + "."};
}

// Beside the executable in a build tree, else where installation puts it. Never along a search path.
LoadedModule loadModule() {
  std::error_code failure;
  const std::filesystem::path executable = std::filesystem::read_symlink("/proc/self/exe", failure);
  const std::array<std::filesystem::path, 2> places{
      executable.parent_path() / panelModuleFile,
      executable.parent_path().parent_path() / TARNWICK_MODULE_DIR / panelModuleFile};
  for (const std::filesystem::path& place : places)
    if (place.is_absolute() && std::filesystem::exists(place, failure)) return load(place);
  return {
      .failure =
          "The panel is not installed: the package tarnwick-panel brings it, or “make tray” in a source tree."};
}

}  // namespace

int showApplication(const PanelApplication& application) {
  const LoadedModule module = loadModule();
  return module.entry == nullptr ? complain(module.failure + " Try --print.") : module.entry(application);
}

bool writePanelImage(const PanelPicture& picture) {
  const LoadedModule module = loadModule();
  if (module.entry == nullptr) complain(module.failure);
  return module.entry != nullptr && module.entry(picture) == 0;
}

}  // namespace tarnwick::panel
