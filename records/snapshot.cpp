#include "records/snapshot.h"

#include <algorithm>

namespace tarnwick {

std::string_view lastPathComponent(std::string_view path) {
  const auto slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string_view Proc::name() const { return lastPathComponent(args.empty() ? path : args.front()); }

void Snapshot::index() {
  std::vector<std::pair<Pid, Pid>> links;  // parent, child
  links.reserve(procs.size());
  for (const auto& [pid, proc] : procs) links.emplace_back(proc.ppid, pid);
  std::sort(links.begin(), links.end());
  children.clear();
  for (const auto& [parent, child] : links) children[parent].push_back(child);
}

}  // namespace tarnwick
