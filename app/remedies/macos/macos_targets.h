// Remedies on macOS: signals to checked processes, applications and settings through AppKit.
#pragma once

#include <cstdint>
#include <string>

#include "app/remedies/system_targets.h"

namespace tarnwick {

class MacosTargets final : public SystemTargets {
 public:
  // `uid`: whose processes may be signalled.
  explicit MacosTargets(std::uint32_t uid) : uid_(uid) {}

  SignalOutcome signal(const Signal& signal) override;
  bool hasDesktop() override;
  void quitApp(const std::string& bundleID) override;
  // A pane of which no address can be made is a fault.
  bool openSettings(const std::string& pane) override;

 private:
  std::uint32_t uid_;
};

}  // namespace tarnwick
