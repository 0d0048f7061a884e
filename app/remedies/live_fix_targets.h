// The remedies that go through the container engine, an outside tool or the browsers: the same on every
// system. Each system derives from this and adds signals, applications and settings.
#pragma once

#include "app/remedies/fix_execution.h"
#include "context/browsers.h"
#include "sampling/engine/docker.h"
#include "sampling/tools/tool_places.h"
#include "sampling/tools/tool_runner.h"

namespace tarnwick {

class LiveFixTargets : public FixTargets {
 public:
  // All of them outlive this object.
  struct Parts {
    const Docker& docker;
    Browsers& browsers;
    ToolRunner& tools;
    ToolPlaces& places;
  };

  explicit LiveFixTargets(const Parts& parts) : parts_(parts) {}

  bool dockerStop(const std::string& container) override;
  SimulatorOutcome simShutdown(const std::string& udid) override;
  bool askAutomation(const std::string& bundleID) override;
  bool closeDuplicateTabs(const std::string& bundleID) override;
  bool openTab(const std::string& bundleID, const std::string& address) override;

 private:
  const Parts parts_;
};

}  // namespace tarnwick
