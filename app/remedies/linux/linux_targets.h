// Remedies on Linux. Settings panes, simulators and browser scripting do not exist there and are refused.
#pragma once

#include <string>
#include <utility>

#include "app/remedies/linux/linux_signals.h"
#include "app/remedies/live_fix_targets.h"
#include "sampling/workspace.h"

namespace tarnwick {

class LinuxFixTargets final : public LiveFixTargets {
 public:
  // `parts` and `workspace` outlive this object.
  LinuxFixTargets(const Parts& parts, Workspace& workspace, LinuxSignals signals)
      : LiveFixTargets(parts), workspace_(workspace), signals_(std::move(signals)) {}

  SignalOutcome signal(const Signal& signal) override { return signals_.send(signal); }

  // Asks the main process of each of the application's units to end.
  void quitApp(const std::string& bundleID) override;

  bool openSettings(const std::string& /*pane*/) override { return false; }

 private:
  Workspace& workspace_;
  LinuxSignals signals_;
};

}  // namespace tarnwick
