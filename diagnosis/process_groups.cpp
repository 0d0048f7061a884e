#include "diagnosis/process_groups.h"

#include "records/checked.h"

namespace tarnwick {
namespace {

void count(const Proc& proc, const Proc& root, ProcessGroup& group) {
  if (group.root == nullptr) group.root = &root;
  if (group.oldest == nullptr || proc.started < group.oldest->started) group.oldest = &proc;
  if (group.server == nullptr && !proc.ports.empty()) group.server = &proc;
  group.cpu += proc.cpu;
  group.bytes = saturatingAdd(group.bytes, proc.footprint);
  ++group.count;
}

}  // namespace

void ProcessGroups::add(const Proc& proc, Starters& starters) {
  if (proc.app) return addTo(*proc.app, proc);
  const Proc& root = *starters.of(proc).root;
  count(proc, root, jobs[root.pid]);
}

void ProcessGroups::addTo(std::string_view app, const Proc& proc) { count(proc, proc, apps[app]); }

}  // namespace tarnwick
