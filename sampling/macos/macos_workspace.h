// The applications of this desktop session, from AppKit.
#pragma once

#include "sampling/workspace.h"

namespace tarnwick {

class MacosWorkspace : public Workspace {
 public:
  std::vector<RunningApp> runningApps() override;
};

}  // namespace tarnwick
