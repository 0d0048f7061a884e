#include "sampling/linux/stat_cache.h"

#include <utility>

namespace tarnwick {

void StatCache::beginPass() {
  if (!fresh_.empty()) known_ = std::exchange(fresh_, {});
  othersInodes_.clear();
}

const ProcStat* StatCache::find(Pid pid, std::uint64_t inode) {
  auto entry = known_.extract(pid);
  if (entry.empty() || entry.mapped().inode != inode) return nullptr;
  if (inodeOf(entry.mapped().stat.ppid) != entry.mapped().parentInode) return nullptr;
  return &fresh_.insert(std::move(entry)).position->second.stat;
}

void StatCache::keep(Pid pid, std::uint64_t inode, const ProcStat& stat) {
  if (!usable_) return;
  if (const auto parentInode = inodeOf(stat.ppid)) {
    fresh_.insert_or_assign(pid, Entry{inode, *parentInode, stat});
  }
}

std::optional<std::uint64_t> StatCache::inodeOf(Pid pid) {
  if (pid <= 1) return 0;  // the first process never ends, and 0 is nobody's
  if (const auto mine = fresh_.find(pid); mine != fresh_.end()) return mine->second.inode;
  const auto [other, isNew] = othersInodes_.try_emplace(pid);
  if (isNew) {
    if (const auto folder = reader_.folder(pid)) other->second = folder->inode;
  }
  return other->second;
}

}  // namespace tarnwick
