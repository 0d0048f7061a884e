#include "app/remedies/linux/linux_targets.h"

#include <csignal>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "app/remedies/linux/detached_program.h"
#include "sampling/linux/linux_process_source.h"
#include "sampling/tools/tool_places.h"

namespace tarnwick {
namespace {

std::set<Pid> mainProcesses(Workspace& workspace, const std::string& bundleID) {
  std::set<Pid> pids;
  for (const RunningApp& app : workspace.runningApps()) {
    if (app.bundleID == bundleID) pids.insert(app.pid);
  }
  return pids;
}

std::vector<std::string> inFolders(std::vector<std::string> folders, const std::string& program) {
  for (std::string& folder : folders) folder.append("/").append(program);
  return folders;
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

bool LinuxTargets::openSettings(const std::string& pane) {
  const DesktopSession desktop = desktop_();
  if (!desktop.hasDisplay) return false;
  for (std::vector<std::string>& words : settingsPlaces(pane, desktop)) {
    const auto program = executable(inFolders(desktop.programFolders, words.front()), files_);
    words.erase(words.begin());
    const bool opensFolder = !words.empty() && words.front().starts_with('/');
    if (!program || (opensFolder && !files_.isDirectory(words.front()))) continue;
    if (startDetached(*program, std::move(words))) return true;
  }
  return false;
}

std::unique_ptr<SystemTargets> systemTargets(LiveMachine& sources, Files& files, const Self& self) {
  // The machine of this system's folder has a source of this system's folder.
  const auto& processes = static_cast<const LinuxProcessSource&>(sources.processes());
  return std::make_unique<LinuxTargets>(sources.workspace(), LinuxSignals(self.uid, processes.clock()), files,
                                        [home = self.home] { return currentDesktop(home); });
}

}  // namespace tarnwick
