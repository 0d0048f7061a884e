// The desktop session: which applications run.
#pragma once

#include <vector>

#include "records/snapshot.h"

namespace tarnwick {

class Workspace {
 public:
  virtual ~Workspace() = default;

  // The running applications in the session's own order; those without an identifier or a place on disk
  // are left out. Empty where there is no session.
  virtual std::vector<RunningApp> runningApps() = 0;
};

}  // namespace tarnwick
