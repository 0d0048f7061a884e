// Containers that run on this system's own kernel, as their control groups tell. Everybody may read those,
// also who may not ask the engine.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "records/snapshot.h"

namespace tarnwick {

// One container at one moment.
struct ContainerGroup {
  std::string id;                   // the engine's, its first 12 characters
  std::uint64_t bytes = 0;          // in use without droppable cache; 0 when unknown
  std::uint64_t processorTime = 0;  // nanoseconds so far; 0 when unknown
  std::vector<Pid> pids;            // its processes
};

// What happened to the containers between two looks `seconds` apart; only those of the second look count.
struct ContainerInterval {
  std::vector<ContainerGroup> before;
  std::vector<ContainerGroup> after;
  double seconds = 0;
};

// Leaves the biggest containers in the list, as many as limits.h names, in their order; of equal ones the
// first.
void listBiggest(Snapshot& snapshot);

// Says of each which of them are in a container.
void markOthers(const ContainerInterval& interval, std::vector<OtherProc>& others);

// Puts the load, what each container uses, the memory of the containers that the engine named, and whose a
// process is into the snapshot.
void addContainers(const ContainerInterval& interval, Snapshot& snapshot);

}  // namespace tarnwick
