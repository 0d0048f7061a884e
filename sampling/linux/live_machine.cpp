#include "sampling/live_machine.h"

#include "sampling/linux/desktop_entries.h"
#include "sampling/linux/linux_machine_source.h"
#include "sampling/linux/linux_process_source.h"
#include "sampling/linux/xdg_workspace.h"

namespace tarnwick {
namespace {

class LinuxMachine : public LiveMachine {
 public:
  explicit LinuxMachine(const Self& self)
      : entries_(applicationFolders(self.home)),
        workspace_(entries_, self.uid),
        machine_({.uid = self.uid, .home = self.home}),
        processes_(
            {.uid = self.uid, .appDisplayName = [this](const std::string& id) { return displayName(id); }}) {}

  ProcessSource& processes() override { return processes_; }
  MachineSource& machine() override { return machine_; }
  Workspace& workspace() override { return workspace_; }

  // An engine needs no desktop here: its socket is the sign.
  bool dockerRuns(const Docker& docker) override { return docker.present(); }

 private:
  std::optional<std::string> displayName(const std::string& id) {
    const std::optional<DesktopEntry> entry = entries_.find(id);
    return entry ? std::optional(entry->name) : std::nullopt;
  }

  DesktopEntries entries_;
  XdgWorkspace workspace_;
  LinuxMachineSource machine_;
  LinuxProcessSource processes_;
};

}  // namespace

std::unique_ptr<LiveMachine> liveMachine(const Self& self) { return std::make_unique<LinuxMachine>(self); }

}  // namespace tarnwick
