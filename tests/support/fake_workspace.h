// A session whose running applications are a field.
#pragma once

#include "sampling/workspace.h"

namespace tarnwick {

struct FakeWorkspace : Workspace {
  std::vector<RunningApp> apps;

  std::vector<RunningApp> runningApps() override { return apps; }
};

}  // namespace tarnwick
