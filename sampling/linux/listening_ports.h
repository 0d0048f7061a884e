// On which TCP ports does a process listen: the inodes of its sockets, matched against the machine's
// listeners. These are read once per pass, and only when somebody asks. Used by one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "records/basics.h"
#include "sampling/decode/listeners.h"
#include "sampling/linux/proc_reader.h"
#include "system/check_limits.h"

namespace tarnwick {

class ListeningPorts {
 public:
  // So many descriptors of one process are looked at, the lowest, and of all in one pass. Servers listen
  // early, before they have many.
  static constexpr std::size_t mostOfProcess = 16'384;
  static constexpr std::size_t mostOfPass = 262'144;

  // `reader` and `limits` must outlive the object. `live`: it reads this machine's own /proc, so netlink may
  // answer. `limits`: of the check; null: there is none.
  ListeningPorts(const ProcReader& reader, bool live, CheckLimits* limits = nullptr)
      : reader_(reader), live_(live), limits_(limits) {}

  // Forgets the machine's listeners.
  void beginPass();

  // Ascending, each once; empty when unreadable. A process in another network namespace (a container's,
  // say) has none: its listeners are in its own tables, which nobody outside can reach its ports by.
  std::vector<std::uint16_t> of(const ProcessFiles& process);

  // All listeners, from the text tables under "net": the fallback for netlink.
  std::vector<Listener> fromTables() const;

 private:
  void readListeners();
  bool mayLookOn(std::size_t looked);

  const ProcReader& reader_;
  bool live_;
  CheckLimits* limits_;
  std::size_t lookedInPass_ = 0;                    // descriptors
  std::optional<std::vector<Listener>> listeners_;  // ascending by inode; absent until asked for in a pass
};

}  // namespace tarnwick
