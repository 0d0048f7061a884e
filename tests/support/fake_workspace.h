// A session whose running applications are a field.
#pragma once

#include "sampling/workspace.h"

namespace tarnwick {

class FakeWorkspace : public Workspace {
 public:
  std::vector<RunningApp> apps;

  std::vector<RunningApp> runningApps() override { return apps; }
};

}  // namespace tarnwick
