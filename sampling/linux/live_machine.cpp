#include "sampling/live_machine.h"

#include "sampling/linux/applications.h"
#include "sampling/linux/desktop_entries.h"
#include "sampling/linux/linux_machine_source.h"
#include "sampling/linux/linux_process_source.h"

namespace tarnwick {
namespace {

class LinuxMachine : public LiveMachine {
 public:
  LinuxMachine(const Self& self, Files& files, CheckLimits& limits)
      : entries_(applicationFolders(self.home), messageLocale(), &files),
        applications_(entries_, {.uid = self.uid, .home = self.home}),
        processes_({.uid = self.uid, .applications = &applications_, .limits = &limits}),
        machine_({.uid = self.uid, .home = self.home, .files = &processes_.machineFiles()}, &files) {}

  ProcessSource& processes() override { return processes_; }
  MachineSource& machine() override { return machine_; }
  Workspace& workspace() override { return applications_; }

  // An engine needs no desktop here: its socket is the sign.
  bool dockerRuns(const Docker& docker) override { return docker.present(); }

 private:
  DesktopEntries entries_;
  Applications applications_;
  LinuxProcessSource processes_;
  LinuxMachineSource machine_;
};

}  // namespace

std::unique_ptr<LiveMachine> liveMachine(const Self& self, Files& files, CheckLimits& limits) {
  return std::make_unique<LinuxMachine>(self, files, limits);
}

}  // namespace tarnwick
