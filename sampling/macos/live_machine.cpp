#include "sampling/live_machine.h"

#include <algorithm>

#include "sampling/macos/desktop_session.h"
#include "sampling/macos/macos_machine_source.h"
#include "sampling/macos/macos_process_source.h"

namespace tarnwick {
namespace {

class MacosMachine : public LiveMachine {
 public:
  explicit MacosMachine(const Self& self)
      : processes_(self),
        machine_({.thermal = currentThermalState, .importantCapacity = importantUsageCapacity}) {}

  ProcessSource& processes() override { return processes_; }
  MachineSource& machine() override { return machine_; }
  Workspace& workspace() override { return workspace_; }

  // The engine's application runs or it does not; its socket outlives it.
  bool dockerRuns(const Docker& /*docker*/) override {
    return std::ranges::any_of(workspace_.runningApps(),
                               [](const RunningApp& app) { return app.bundleID == "com.docker.docker"; });
  }

 private:
  MacosProcessSource processes_;
  MacosMachineSource machine_;
  MacosWorkspace workspace_;
};

}  // namespace

std::unique_ptr<LiveMachine> liveMachine(const Self& self) { return std::make_unique<MacosMachine>(self); }

}  // namespace tarnwick
