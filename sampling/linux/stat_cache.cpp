#include "sampling/linux/stat_cache.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

void StatCache::beginPass(std::vector<OwnedProcess> present) {
  present_ = std::move(present);
  othersInodes_.clear();
  std::erase_if(entries_, [this](const auto& entry) {
    return !std::ranges::binary_search(present_, entry.first, {}, &OwnedProcess::pid);
  });
}

const ProcStat* StatCache::find(Pid pid) {
  const auto entry = entries_.find(pid);
  if (entry == entries_.end()) return nullptr;
  const auto& [inode, parentInode, stat] = entry->second;
  return inodeOf(pid) == inode && inodeOf(stat.ppid) == parentInode ? &stat : nullptr;
}

void StatCache::keep(Pid pid, const ProcStat& stat) {
  if (!usable_) return;
  const auto inode = inodeOf(pid);
  const auto parentInode = inodeOf(stat.ppid);
  if (inode && parentInode) entries_[pid] = {*inode, *parentInode, stat};
}

std::optional<std::uint64_t> StatCache::inodeOf(Pid pid) {
  if (pid <= 1) return 0;  // the first process never ends, and 0 is nobody's
  const auto mine = std::ranges::lower_bound(present_, pid, {}, &OwnedProcess::pid);
  if (mine != present_.end() && mine->pid == pid) return mine->inode;
  const auto [other, isNew] = othersInodes_.try_emplace(pid);
  if (isNew) other->second = reader_.inode(pid);
  return other->second;
}

}  // namespace tarnwick
