#include "app/remedies/macos/macos_targets.h"

#include <signal.h>

#include <cerrno>
#include <optional>
#include <system_error>

#include "app/remedies/macos/applications.h"
#include "records/checked.h"
#include "sampling/macos/kernel_questions.h"

namespace tarnwick {

// macOS has no handle on a process: the look comes right before the signal, and what can still pass between
// the two is the time of one system call.
SignalOutcome MacosTargets::signal(const Signal& signal) {
  if (signal.pid < firstOrdinaryPid) return {SignalOutcome::Kind::refused};
  const auto record = processRecord(signal.pid);
  if (!record || record->pbi_uid != uid_ ||
      static_cast<double>(record->pbi_start_tvsec) != seconds(signal.started)) {
    return {SignalOutcome::Kind::refused};
  }
  if (::kill(signal.pid, signal.number) == 0) return {SignalOutcome::Kind::sent};
  return {SignalOutcome::Kind::failed, std::generic_category().message(errno)};
}

void MacosTargets::quitApp(const std::string& bundleID) { askApplicationsToQuit(bundleID); }

bool MacosTargets::hasDesktop() { return isInDesktopSession(); }

bool MacosTargets::openSettings(const std::string& pane) {
  const auto opened = openAddress("x-apple.systempreferences:" + pane);
  if (!opened) fault("no address can be made of the settings pane " + pane);
  return *opened;
}

std::unique_ptr<SystemTargets> systemTargets(LiveMachine& /*sources*/, Files& /*files*/, const Self& self) {
  return std::make_unique<MacosTargets>(self.uid);
}

}  // namespace tarnwick
