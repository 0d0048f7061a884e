// The sources of the operating system that the program was built for. Each system's folder has its own.
#pragma once

#include "sampling/engine/docker.h"
#include "sampling/machine_source.h"
#include "sampling/process_source.h"
#include "sampling/workspace.h"
#include "system/port.h"

namespace tarnwick {

// Owns its sources; used by one thread at a time.
class LiveMachine {
 public:
  virtual ~LiveMachine() = default;

  virtual ProcessSource& processes() = 0;
  virtual MachineSource& machine() = 0;
  virtual Workspace& workspace() = 0;

  // Is there a container engine that may be asked?
  virtual bool dockerRuns(const Docker& docker) = 0;
};

}  // namespace tarnwick
