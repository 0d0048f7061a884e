// PID/stat is the dearest file of a process, and while a process lives and keeps its parent nothing in it
// changes that a later check needs. This remembers it from check to check. Whether it is still the same
// process is told by the inode of its folder: the kernel numbers a folder anew for every process that gets
// the pid (and, at worst, for the same one, which is then read again). A parent only changes when the old
// one ends, so the parent's inode tells the rest. Used by one thread at a time.
#pragma once

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "sampling/decode/proc_text.h"
#include "sampling/linux/proc_reader.h"

namespace tarnwick {

class StatCache {
 public:
  // `reader` outlives the cache. `usable`: false for a recorded tree, whose inodes mean nothing.
  StatCache(const ProcReader& reader, bool usable) : reader_(reader), usable_(usable) {}

  // Takes the processes that a pass found and forgets all others.
  void beginPass(std::vector<OwnedProcess> present);

  // What was kept for this very process under its present parent; null otherwise.
  const ProcStat* find(Pid pid);

  // Keeps what was just read of a process of this pass.
  void keep(Pid pid, const ProcStat& stat);

 private:
  struct Entry {
    std::uint64_t inode = 0;
    std::uint64_t parentInode = 0;
    ProcStat stat;
  };

  // Of a process of this pass, or of another user's; absent when there is none.
  std::optional<std::uint64_t> inodeOf(Pid pid);

  const ProcReader& reader_;
  const bool usable_;
  std::vector<OwnedProcess> present_;                                   // ascending by pid
  std::unordered_map<Pid, std::optional<std::uint64_t>> othersInodes_;  // of this pass
  std::unordered_map<Pid, Entry> entries_;
};

}  // namespace tarnwick
