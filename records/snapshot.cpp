#include "records/snapshot.h"

#include <algorithm>

namespace tarnwick {

std::string_view lastPathComponent(std::string_view path) {
  const auto slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string_view Proc::name() const { return lastPathComponent(args.empty() ? path : args.front()); }

void Snapshot::index() {
  // The parent in the upper half of one number, the child in the lower: sorted at half the price of pairs.
  constexpr unsigned half = 32;
  std::vector<std::uint64_t> links;
  links.reserve(procs.size());
  for (const auto& [pid, proc] : procs)
    links.push_back(std::uint64_t{static_cast<std::uint32_t>(proc.ppid)} << half |
                    static_cast<std::uint32_t>(pid));
  std::sort(links.begin(), links.end());
  children.clear();
  for (const std::uint64_t link : links)
    children[static_cast<Pid>(link >> half)].push_back(static_cast<Pid>(link & 0xFFFF'FFFFU));
}

}  // namespace tarnwick
