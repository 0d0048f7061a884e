// Remedies on macOS: signals to checked processes, applications and settings through AppKit.
#pragma once

#include <string>

#include "app/remedies/live_fix_targets.h"
#include "records/basics.h"

namespace tarnwick {

class MacosFixTargets final : public LiveFixTargets {
 public:
  // Everything in `parts` outlives this object. `uid`: whose processes may be signalled.
  MacosFixTargets(const Parts& parts, std::uint32_t uid) : LiveFixTargets(parts), uid_(uid) {}

  SignalOutcome signal(const Signal& signal) override;
  void quitApp(const std::string& bundleID) override;
  // A pane of which no address can be made is a fault.
  bool openSettings(const std::string& pane) override;

 private:
  std::uint32_t uid_;
};

}  // namespace tarnwick
