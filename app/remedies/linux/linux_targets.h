// Remedies on Linux. What macOS shows in a pane of its settings, the desktops show in programs of theirs,
// which are started and left alone; a pane that only macOS has is refused.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "app/remedies/linux/linux_signals.h"
#include "app/remedies/linux/settings_places.h"
#include "app/remedies/system_targets.h"
#include "sampling/workspace.h"
#include "system/files.h"

namespace tarnwick {

class LinuxTargets final : public SystemTargets {
 public:
  // `desktop` is asked each time. `workspace` and `files`, the system's own, outlive this object.
  LinuxTargets(Workspace& workspace, LinuxSignals signals, Files& files,
               std::function<DesktopSession()> desktop)
      : workspace_(workspace), signals_(std::move(signals)), files_(files), desktop_(std::move(desktop)) {}

  SignalOutcome signal(const Signal& signal) override { return signals_.send(signal); }

  // Asks the main process of each of the application's units to end.
  void quitApp(const std::string& bundleID) override;

  bool hasDesktop() override { return desktop_().hasDisplay; }

  // Starts the first of the pane's places that is there; whether the system started it. What its window then
  // says nobody hears.
  bool openSettings(const std::string& pane) override;

 private:
  Workspace& workspace_;
  LinuxSignals signals_;
  Files& files_;
  const std::function<DesktopSession()> desktop_;
};

}  // namespace tarnwick
