#include "app/remedies/linux/linux_targets.h"

#include <csignal>
#include <optional>
#include <set>
#include <vector>

#include "sampling/linux/linux_process_source.h"
#include "system/environment.h"

namespace tarnwick {
namespace {

std::set<Pid> mainProcesses(Workspace& workspace, const std::string& bundleID) {
  std::set<Pid> pids;
  for (const RunningApp& app : workspace.runningApps()) {
    if (app.bundleID == bundleID) pids.insert(app.pid);
  }
  return pids;
}

}  // namespace

// The start times are taken between two looks at the session: a pid that is the application's in both
// cannot have passed to a stranger in between, and after that its start time tells a stranger apart.
void LinuxTargets::quitApp(const std::string& bundleID) {
  std::vector<Signal> requests;
  for (const Pid pid : mainProcesses(workspace_, bundleID)) {
    if (const std::optional<Timestamp> started = signals_.started(pid)) {
      requests.push_back({pid, SIGTERM, *started});
    }
  }
  const std::set<Pid> still = mainProcesses(workspace_, bundleID);
  for (const Signal& request : requests) {
    if (still.count(request.pid) != 0) signals_.send(request);
  }
}

bool LinuxTargets::hasDesktop() {
  const auto isNamed = [](const char* name) { return !environmentVariable(name).value_or("").empty(); };
  return isNamed("WAYLAND_DISPLAY") || isNamed("DISPLAY");
}

std::unique_ptr<SystemTargets> systemTargets(LiveMachine& sources, const Self& self) {
  // The machine of this system's folder has a source of this system's folder.
  const auto& processes = static_cast<const LinuxProcessSource&>(sources.processes());
  return std::make_unique<LinuxTargets>(sources.workspace(), LinuxSignals(self.uid, processes.clock()));
}

}  // namespace tarnwick
