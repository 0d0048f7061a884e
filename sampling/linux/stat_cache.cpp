#include "sampling/linux/stat_cache.h"

#include <utility>

namespace tarnwick {

void StatCache::beginPass() {
  if (!fresh_.empty()) known_ = std::exchange(fresh_, {});
  othersInodes_.clear();
}

const ProcStat* StatCache::find(Pid pid, std::uint64_t inode) {
  if (known_.empty()) return nullptr;
  const auto known = known_.find(pid);
  if (known == known_.end()) return nullptr;
  Entry entry = std::exchange(known->second, {});
  if (entry.inode == 0 || entry.inode != inode || inodeOf(entry.stat.ppid) != entry.parentInode)
    return nullptr;
  return &(fresh_[pid] = std::move(entry)).stat;
}

void StatCache::keep(Pid pid, std::uint64_t inode, const ProcStat& stat) {
  if (!usable_) return;
  if (const auto parentInode = inodeOf(stat.ppid)) {
    fresh_[pid] = {inode, *parentInode, stat};
  }
}

std::optional<std::uint64_t> StatCache::inodeOf(Pid pid) {
  if (pid <= 1) return 0;  // the first process never ends, and 0 is nobody's
  if (const auto mine = fresh_.find(pid); mine != fresh_.end()) return mine->second.inode;
  if (const auto other = othersInodes_.find(pid); other != othersInodes_.end()) return other->second;
  const auto folder = reader_.folder(pid);
  return othersInodes_[pid] = folder ? std::optional(folder->inode) : std::nullopt;
}

}  // namespace tarnwick
