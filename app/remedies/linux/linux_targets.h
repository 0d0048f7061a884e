// Remedies on Linux. Settings panes do not exist there and are refused.
#pragma once

#include <string>
#include <utility>

#include "app/remedies/linux/linux_signals.h"
#include "app/remedies/system_targets.h"
#include "sampling/workspace.h"

namespace tarnwick {

class LinuxTargets final : public SystemTargets {
 public:
  // `workspace` outlives this object.
  LinuxTargets(Workspace& workspace, LinuxSignals signals)
      : workspace_(workspace), signals_(std::move(signals)) {}

  SignalOutcome signal(const Signal& signal) override { return signals_.send(signal); }

  // Asks the main process of each of the application's units to end.
  void quitApp(const std::string& bundleID) override;

  // As the session's environment says.
  bool hasDesktop() override;

  bool openSettings(const std::string& /*pane*/) override { return false; }

 private:
  Workspace& workspace_;
  LinuxSignals signals_;
};

}  // namespace tarnwick
