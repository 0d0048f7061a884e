// On which TCP ports does a process listen: the inodes of its sockets, matched against the machine's
// listeners. These are read once per pass, and only when somebody asks. Used by one thread at a time.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "records/basics.h"
#include "sampling/decode/listeners.h"
#include "sampling/linux/proc_reader.h"

namespace tarnwick {

class ListeningPorts {
 public:
  // `reader` must outlive the object. `live`: it reads this machine's own /proc, so netlink may answer.
  ListeningPorts(const ProcReader& reader, bool live) : reader_(reader), live_(live) {}

  // Forgets the machine's listeners.
  void beginPass() { listeners_.reset(); }

  // Ascending, each once; empty when unreadable. A process in another network namespace (a container's,
  // say) has none: its listeners are in its own tables, which nobody outside can reach its ports by.
  std::vector<std::uint16_t> of(const ProcessFiles& process);

  // All listeners, from the text tables under "net": the fallback for netlink.
  std::vector<Listener> fromTables() const;

 private:
  void readListeners();

  const ProcReader& reader_;
  bool live_;
  std::optional<std::vector<Listener>> listeners_;  // ascending by inode; absent until asked for in a pass
};

}  // namespace tarnwick
