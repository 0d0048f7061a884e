#include "sampling/container_group.h"

#include <algorithm>

#include "records/checked.h"

namespace tarnwick {
namespace {

constexpr double nanosecondsInSecond = 1e9;

const ContainerGroup* groupOf(const std::vector<ContainerGroup>& groups, const std::string& id) {
  const auto found =
      std::find_if(groups.begin(), groups.end(), [&](const ContainerGroup& group) { return group.id == id; });
  return found == groups.end() ? nullptr : &*found;
}

// Cores' worth; 0 for a container that started in the interval.
double coresOf(const ContainerGroup& group, const ContainerInterval& interval) {
  const ContainerGroup* earlier = groupOf(interval.before, group.id);
  if (earlier == nullptr || group.processorTime < earlier->processorTime || !(interval.seconds > 0)) return 0;
  return static_cast<double>(group.processorTime - earlier->processorTime) / nanosecondsInSecond /
         interval.seconds;
}

}  // namespace

void addContainers(const ContainerInterval& interval, Snapshot& snapshot) {
  if (interval.after.empty()) return;
  ContainerLoad load;
  for (const ContainerGroup& group : interval.after) {
    ++load.count;
    load.bytes = checkedAdd(load.bytes, group.bytes);
    load.cpu += coresOf(group, interval);
    for (const Pid pid : group.pids) {
      if (const auto proc = snapshot.procs.find(pid); proc != snapshot.procs.end()) {
        proc->second.inContainer = true;
      }
    }
  }
  if (snapshot.cores > 0) load.cpu = std::min<double>(load.cpu, snapshot.cores);
  for (Container& container : snapshot.containers) {
    if (const ContainerGroup* group = groupOf(interval.after, container.id)) container.mem = group->bytes;
  }
  snapshot.containerLoad = load;
}

}  // namespace tarnwick
