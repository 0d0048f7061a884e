#include "app/panel/linux/user_panel_settings.h"

#include <filesystem>
#include <system_error>

namespace tarnwick::panel {
namespace {

// The name of the file, not the link to it: the entry is read by another process, in another run.
std::string executablePath() {
  std::error_code failure;
  return std::filesystem::read_symlink("/proc/self/exe", failure).string();
}

}  // namespace

UserPanelSettings::UserPanelSettings(const std::string& home)
    : loginItem_(configFolder(home), executablePath()), defaults_(configFolder(home)) {}

std::unique_ptr<PanelSettings> userPanelSettings(const Self& self) {
  return std::make_unique<UserPanelSettings>(self.home);
}

}  // namespace tarnwick::panel
