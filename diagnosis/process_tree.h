// Parents and children inside one snapshot: who started a process, and what hangs below it. Results point
// into the snapshot and live as long as it does. Parents and children come from a machine that moved while
// it was read, so no walk trusts them to end: each visits a process at most once.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "records/snapshot.h"

namespace tarnwick {

// Where a process came from.
struct Starter {
  const Proc* root = nullptr;      // highest process that still belongs to the work; a shell only when
                                   // nothing else is there; never null
  std::optional<std::string> who;  // "you", "Claude Code" or an application's name; absent: it is gone
  std::optional<Pid> claude;       // the `claude` process, when `who` is "Claude Code"
};

// Answers for many processes of one snapshot. What was climbed once is remembered, so that asking for every
// process of a deep chain stays linear. One per rule run.
class Starters {
 public:
  explicit Starters(const Snapshot& snapshot) : snapshot_(snapshot) {}

  Starter of(const Proc& proc);

 private:
  struct Climb {
    const Proc* top = nullptr;      // the last process before `starter`
    const Proc* root = nullptr;     // the highest that is no shell; null while there are only shells
    const Proc* starter = nullptr;  // the login shell, application or `claude` above; null: gone
  };
  Climb climb(const Proc& proc);

  const Snapshot& snapshot_;
  std::unordered_map<Pid, Climb> climbed_;  // by pid; also breaks parent cycles
};

// The answer for one process.
Starter starter(const Proc& proc, const Snapshot& snapshot);

// Everything below `pid`, without itself: its children, then the subtree of each child in turn.
std::vector<const Proc*> descendants(Pid pid, const Snapshot& snapshot);

// The footprint of a process together with all its descendants, in bytes. Remembers subtrees, so that
// asking for every process of a deep chain stays linear. One per rule run.
class TreeMemory {
 public:
  explicit TreeMemory(const Snapshot& snapshot) : snapshot_(snapshot) {}

  std::uint64_t of(const Proc& top);

 private:
  const Snapshot& snapshot_;
  std::unordered_map<Pid, std::uint64_t> known_;
};

}  // namespace tarnwick
