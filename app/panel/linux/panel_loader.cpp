#include <dlfcn.h>

#include <array>
#include <filesystem>
#include <system_error>

#include "app/output.h"
#include "app/panel/panel_module.h"

namespace tarnwick {
namespace {

// Beside the executable in a build tree, else where installation puts it. Never along a search path.
PanelModuleEntry loadEntry() {
  std::error_code failure;
  const std::filesystem::path executable = std::filesystem::read_symlink("/proc/self/exe", failure);
  const std::array<std::filesystem::path, 2> places{
      executable.parent_path() / panelModuleFile,
      executable.parent_path().parent_path() / TARNWICK_MODULE_DIR / panelModuleFile};
  for (const std::filesystem::path& place : places) {
    if (!place.is_absolute() || !std::filesystem::exists(place, failure)) continue;
    // Stays loaded: the toolkit cannot be unloaded.
    if (void* module = dlopen(place.c_str(), RTLD_NOW | RTLD_LOCAL); module != nullptr)
      return reinterpret_cast<PanelModuleEntry>(dlsym(module, panelModuleEntry));
  }
  return nullptr;
}

}  // namespace

int showApplication(const PanelApplication& application) {
  const PanelModuleEntry entry = loadEntry();
  if (entry == nullptr)
    return complain("The panel needs Qt 6 Widgets and its module, which are not installed. Try --print.");
  return entry(application);
}

bool writePanelImage(const PanelPicture& picture) {
  const PanelModuleEntry entry = loadEntry();
  return entry != nullptr && entry(picture) == 0;
}

}  // namespace tarnwick
