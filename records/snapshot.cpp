#include "records/snapshot.h"

namespace tarnwick {

std::string_view lastPathComponent(std::string_view path) {
  const auto slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string_view Proc::name() const { return lastPathComponent(args.empty() ? path : args.front()); }

void Snapshot::index() {
  children.clear();
  for (const auto& [pid, proc] : procs) children[proc.ppid].push_back(pid);
}

}  // namespace tarnwick
