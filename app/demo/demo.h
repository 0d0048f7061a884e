// The built-in demo machine: complete, fixed snapshots that are made without looking at this machine.
// All ages are relative to the given moment, so the demo reads the same whenever it runs.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "records/snapshot.h"

namespace tarnwick {

struct Demo {
  Snapshot snapshot;  // indexed, like a sampled one
  // Directories that the demo pretends to know the repository of; they go into the git cache, stamped `now`.
  std::vector<std::pair<std::string, Git>> repositories;
};

// The base demo, or one of its scenarios "memory", "calm" and "developer" (matched exactly). Absent for
// any other scenario name.
std::optional<Demo> demoSnapshot(Timestamp now, const std::optional<std::string>& scenario, const Self& self);

// The sentence for a scenario name that there is none for, with its line feed.
std::string unknownScenario(const std::string& name);

}  // namespace tarnwick
