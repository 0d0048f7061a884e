#include "app/remedies/live_fix_targets.h"

#include <memory>
#include <optional>

namespace tarnwick {
namespace {

constexpr double simulatorSeconds = 120;  // a device that is busy takes its time to shut down

}  // namespace

bool LiveFixTargets::dockerStop(const std::string& container) { return parts_.docker.stop(container); }

SimulatorOutcome LiveFixTargets::simShutdown(const std::string& udid) {
  const std::optional<std::string>& simctl = parts_.places.simctlBin();
  if (!simctl) return SimulatorOutcome::noXcode;
  ToolOptions options;
  options.seconds = simulatorSeconds;
  const std::unique_ptr<RunningTool> tool = parts_.tools.start(*simctl, {"shutdown", udid}, options);
  if (tool == nullptr) return SimulatorOutcome::noXcode;
  return tool->result().exitStatus == 0 ? SimulatorOutcome::done : SimulatorOutcome::failed;
}

bool LiveFixTargets::askAutomation(const std::string& bundleID) {
  return parts_.browsers.askAccess(bundleID);
}

bool LiveFixTargets::closeDuplicateTabs(const std::string& bundleID) {
  return parts_.browsers.closeDuplicates(bundleID);
}

bool LiveFixTargets::openTab(const std::string& bundleID, const std::string& address) {
  return parts_.browsers.openPage(address, bundleID);
}

}  // namespace tarnwick
