// What the Objective-C++ files offer, answered as if the frameworks knew nothing: with it the plain C++ of
// the macOS build links into a whole program where no framework is at hand.
#include <string>

#include "app/panel/panel_jobs.h"
#include "app/remedies/macos/applications.h"
#include "app/settings/user_settings.h"
#include "context/macos/apple_events.h"
#include "sampling/macos/desktop_session.h"

namespace tarnwick {

ThermalState currentThermalState() { return ThermalState::nominal; }
std::optional<std::int64_t> importantUsageCapacity() { return std::nullopt; }
std::vector<RunningApp> MacosWorkspace::runningApps() { return {}; }

std::int32_t automationStatus(const std::string& /*bundleID*/, bool /*askUser*/) { return -600; }
std::optional<std::vector<std::string>> tabURLs(const std::string& /*bundleID*/) { return std::nullopt; }
std::string localMediumDate(Timestamp /*moment*/) { return "?"; }
std::optional<std::string> propertyListText(const std::string& /*list*/, const std::string& /*key*/) {
  return std::nullopt;
}

void askApplicationsToQuit(const std::string& /*bundleID*/) {}
bool isInDesktopSession() { return false; }
std::optional<bool> openAddress(const std::string& /*address*/) { return false; }
void copyToPasteboard(const std::string& /*text*/) {}
std::unique_ptr<UserSettings> userSettings(const Self& /*self*/, Files& /*files*/) { return nullptr; }

int panel::showApplication(const panel::PanelApplication& /*application*/) { return 1; }
bool panel::writePanelImage(const panel::PanelPicture& /*picture*/) { return false; }

}  // namespace tarnwick
