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

// The kernel knows a volume's room without a question to anybody, and has few descriptors to tell of.
std::unique_ptr<LiveMachine> liveMachine(const Self& self, Files& /*files*/, CheckLimits& /*limits*/) {
  return std::make_unique<MacosMachine>(self);
}

}  // namespace tarnwick
