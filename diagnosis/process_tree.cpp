#include "diagnosis/process_tree.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "records/checked.h"

namespace tarnwick {
namespace {

constexpr Pid firstUserPid = 2;  // 0 and 1 adopt what lost its parent; they start nothing
constexpr std::array<std::string_view, 7> shells{"sh", "bash", "zsh", "fish", "dash", "csh", "tcsh"};

bool isShell(const Proc& proc) {
  return std::find(shells.begin(), shells.end(), proc.name()) != shells.end();
}

bool isClaude(const Proc& proc) { return proc.name() == "claude"; }

// A terminal starts its shell under a name that begins with "-".
bool isLoginShell(const Proc& proc) { return proc.name().starts_with('-'); }

bool startsWork(const Proc& proc) { return isClaude(proc) || isLoginShell(proc) || proc.app; }

const Proc* parentOf(const Proc& proc, const Snapshot& snapshot) {
  if (proc.ppid < firstUserPid) return nullptr;
  const auto parent = snapshot.procs.find(proc.ppid);
  return parent == snapshot.procs.end() ? nullptr : &parent->second;
}

// Calls `visit` with each child of `pid` that is in the snapshot, in ascending pid.
template <class Visit>
void forEachChild(Pid pid, const Snapshot& snapshot, Visit visit) {
  const auto children = snapshot.children.find(pid);
  if (children == snapshot.children.end()) return;
  for (const Pid child : children->second) {
    const auto proc = snapshot.procs.find(child);
    if (proc != snapshot.procs.end()) visit(proc->second);
  }
}

}  // namespace

Starters::Climb Starters::climb(const Proc& proc) {
  std::vector<const Proc*> chain;
  Climb result;
  for (const Proc* current = &proc;;) {
    const auto [entry, isNew] = climbed_.try_emplace(current->pid, Climb{current, nullptr, nullptr});
    if (!isNew) {  // climbed before, or a cycle came back to this chain
      result = entry->second;
      break;
    }
    chain.push_back(current);
    const Proc* parent = parentOf(*current, snapshot_);
    if (parent == nullptr || startsWork(*parent)) {
      result = {current, nullptr, parent};
      break;
    }
    current = parent;
  }
  std::for_each(chain.rbegin(), chain.rend(), [&](const Proc* passed) {
    if (result.root == nullptr && !isShell(*passed)) result.root = passed;
    climbed_[passed->pid] = result;
  });
  return result;
}

Starter Starters::of(const Proc& proc) {
  const Climb climbed = climb(proc);
  Starter result;
  result.root = climbed.root != nullptr ? climbed.root : climbed.top;
  const Proc* by = climbed.starter;
  if (by == nullptr) return result;
  if (isClaude(*by)) {
    result.who = "Claude Code";
    result.claude = by->pid;
  } else if (isLoginShell(*by)) {
    result.who = "you";
  } else {
    result.who = by->app;
  }
  return result;
}

Starter starter(const Proc& proc, const Snapshot& snapshot) { return Starters(snapshot).of(proc); }

std::vector<const Proc*> descendants(Pid pid, const Snapshot& snapshot) {
  std::vector<const Proc*> found;
  std::vector<Pid> open{pid};
  while (!open.empty()) {
    const Pid parent = open.back();
    open.pop_back();
    const std::size_t first = found.size();
    // A process has one parent, so a cycle can only come back to where the walk began.
    forEachChild(parent, snapshot, [&](const Proc& child) {
      if (child.pid != pid) found.push_back(&child);
    });
    for (std::size_t i = found.size(); i > first; --i) open.push_back(found[i - 1]->pid);
  }
  return found;
}

std::uint64_t TreeMemory::of(const Proc& top) {
  const auto before = known_.find(top.pid);
  if (before != known_.end()) return before->second;

  struct Visit {
    Pid pid;
    std::size_t parent;   // index of its parent's visit
    std::uint64_t bytes;  // its own, then its subtree's
    bool onCycle;         // a path leads from here back to `top`
  };
  std::vector<Visit> visits{{top.pid, 0, top.footprint, false}};
  for (std::size_t i = 0; i < visits.size(); ++i) {
    forEachChild(visits[i].pid, snapshot_, [&](const Proc& child) {
      const auto subtree = known_.find(child.pid);
      if (child.pid == top.pid) {
        visits[i].onCycle = true;
      } else if (subtree != known_.end()) {
        visits[i].bytes = checkedAdd(visits[i].bytes, subtree->second);
      } else {
        visits.push_back({child.pid, i, child.footprint, false});
      }
    });
  }
  // Children come after their parents, so going backwards every subtree is complete when it is added.
  for (std::size_t i = visits.size() - 1; i > 0; --i) {
    Visit& parent = visits[visits[i].parent];
    parent.bytes = checkedAdd(parent.bytes, visits[i].bytes);
    parent.onCycle = parent.onCycle || visits[i].onCycle;
  }
  // Whoever is on a cycle with `top` has the same processes below it, and so the same total.
  const std::uint64_t total = visits.front().bytes;
  for (const Visit& visit : visits) known_[visit.pid] = visit.onCycle ? total : visit.bytes;
  return total;
}

}  // namespace tarnwick
