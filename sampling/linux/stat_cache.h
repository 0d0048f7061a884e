// PID/stat is the dearest file of a process, and while a process lives and keeps its parent nothing in it
// changes that a later check needs. This remembers it from check to check. Whether it is still the same
// process is told by the inode of its folder: the kernel numbers a folder anew for every process that gets
// the pid (and, at worst, for the same one, which is then read again). A parent only changes when the old
// one ends, so the parent's inode tells the rest. Used by one thread at a time.
#pragma once

#include <cstdint>
#include <optional>

#include "records/pid_map.h"
#include "sampling/decode/proc_stat.h"
#include "sampling/linux/proc_reader.h"

namespace tarnwick {

class StatCache {
 public:
  // `reader` outlives the cache. `usable`: false for a recorded tree, whose inodes mean nothing.
  StatCache(const ProcReader& reader, bool usable) : reader_(reader), usable_(usable) {}

  // Forgets the processes that the last pass neither found nor kept, unless it asked for none at all.
  void beginPass();

  // What was kept for the process of this folder inode under its present parent; null otherwise. Valid until
  // the next call.
  const ProcStat* find(Pid pid, std::uint64_t inode);

  // Nothing is kept from now on.
  void close() { usable_ = false; }

  // Keeps what was just read.
  void keep(Pid pid, std::uint64_t inode, const ProcStat& stat);

 private:
  struct Entry {
    std::uint64_t inode = 0;
    std::uint64_t parentInode = 0;
    ProcStat stat;
  };

  // Of the folder of any process; absent when there is none.
  std::optional<std::uint64_t> inodeOf(Pid pid);

  const ProcReader& reader_;
  bool usable_;
  PidMap<Entry> known_;                                // of the last pass; inode 0 once taken over
  PidMap<Entry> fresh_;                                // of this pass
  PidMap<std::optional<std::uint64_t>> othersInodes_;  // of this pass, who is not in `fresh_`
};

}  // namespace tarnwick
