#include "app/remedies/linux/linux_fix_targets.h"

#include <csignal>
#include <optional>
#include <set>
#include <vector>

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
void LinuxFixTargets::quitApp(const std::string& bundleID) {
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

}  // namespace tarnwick
