#include "sampling/container_group.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <numeric>
#include <unordered_set>
#include <utility>

#include "records/checked.h"
#include "records/limits.h"

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

void listBiggest(Snapshot& snapshot) {
  std::vector<Container>& all = snapshot.containers;
  if (all.size() <= mostListedContainers) return;
  std::vector<std::size_t> places(all.size());
  std::iota(places.begin(), places.end(), std::size_t{0});
  std::stable_sort(places.begin(), places.end(),
                   [&](std::size_t a, std::size_t b) { return all[a].mem > all[b].mem; });
  const auto end = places.begin() + static_cast<std::ptrdiff_t>(mostListedContainers);
  for (auto place = end; place != places.end(); ++place) {
    ++snapshot.moreContainers.count;
    snapshot.moreContainers.bytes = saturatingAdd(snapshot.moreContainers.bytes, all[*place].mem);
  }
  std::sort(places.begin(), end);
  std::vector<Container> biggest;
  biggest.reserve(mostListedContainers);
  for (auto place = places.begin(); place != end; ++place) biggest.push_back(std::move(all[*place]));
  all = std::move(biggest);
}

void markOthers(const ContainerInterval& interval, std::vector<OtherProc>& others) {
  std::unordered_set<Pid> contained;
  for (const ContainerGroup& group : interval.after) contained.insert(group.pids.begin(), group.pids.end());
  for (OtherProc& other : others) other.inContainer = contained.contains(other.pid);
}

void addContainers(const ContainerInterval& interval, Snapshot& snapshot) {
  if (interval.after.empty()) return;
  ContainerLoad load;
  for (const ContainerGroup& group : interval.after) {
    const double cpu = coresOf(group, interval);
    ++load.count;
    load.bytes = saturatingAdd(load.bytes, group.bytes);
    load.cpu += cpu;
    snapshot.containerUse.push_back({group.id, group.bytes, cpu, std::ssize(group.pids)});
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
