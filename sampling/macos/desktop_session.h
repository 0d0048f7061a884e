// What only the system's Objective-C frameworks tell: the applications of this desktop session, the thermal
// state, and how much the system would make room for. Any thread.
#pragma once

#include <cstdint>
#include <optional>

#include "records/snapshot.h"
#include "sampling/workspace.h"

namespace tarnwick {

class MacosWorkspace : public Workspace {
 public:
  std::vector<RunningApp> runningApps() override;
};

// As the system tells applications; nominal for a state that this program does not know.
ThermalState currentThermalState();

// Bytes on "/" that important data could take, what the system can purge included. Slow: the system adds up
// caches for it. Absent when it gives no figure.
std::optional<std::int64_t> importantUsageCapacity();

}  // namespace tarnwick
