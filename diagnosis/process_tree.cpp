#include "diagnosis/process_tree.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "records/checked.h"
#include "records/shells.h"

namespace tarnwick {
namespace {

constexpr Pid firstUserPid = 2;  // 0 and 1 adopt what lost its parent; they start nothing

// What runs whole desktop sessions, beside the leaders that display managers start: the jobs below have
// nothing to do with each other.
constexpr std::array<std::string_view, 22> sessionPrograms{"Hyprland",
                                                           "awesome",
                                                           "bspwm",
                                                           "cinnamon-session",
                                                           "fluxbox",
                                                           "gnome-session",
                                                           "gnome-shell",
                                                           "i3",
                                                           "kwin_wayland",
                                                           "labwc",
                                                           "lxqt-session",
                                                           "mate-session",
                                                           "niri",
                                                           "openbox",
                                                           "plasma_session",
                                                           "plasmashell",
                                                           "river",
                                                           "startplasma-wayland",
                                                           "startplasma-x11",
                                                           "sway",
                                                           "xfce4-session",
                                                           "xinit"};

// Keep terminals that outlive every window; what they start directly runs in a terminal that is still there.
constexpr std::array<std::string_view, 6> multiplexers{"abduco", "dtach", "screen",
                                                       "SCREEN", "tmux",  "zellij"};

bool isShell(const Proc& proc) { return tarnwick::isShell(proc.name()); }

// Only told where sessions are.
bool isMultiplexer(const Proc& proc) {
  return proc.session != 0 && std::ranges::find(multiplexers, proc.name()) != multiplexers.end();
}

bool isClaude(const Proc& proc) { return proc.name() == "claude"; }

// A terminal starts its shell under a name that begins with "-", or the system tells.
bool isLoginShell(const Proc& proc) { return proc.name().starts_with('-') || proc.terminalShell; }

const Proc* parentOf(const Proc& proc, const Snapshot& snapshot) {
  if (proc.ppid < firstUserPid) return nullptr;
  const auto parent = snapshot.procs.find(proc.ppid);
  return parent == snapshot.procs.end() ? nullptr : &parent->second;
}

// A shell with one command to carry out is nobody's prompt: editors start their tasks so, on a terminal too.
bool carriesOutTask(const Proc& shell, const Snapshot& snapshot) {
  if (!shell.terminalShell || shell.args.size() < 2 || !shell.args[1].starts_with('-')) return false;
  const Proc* by = shell.args[1].ends_with('c') ? parentOf(shell, snapshot) : nullptr;
  return by != nullptr && by->app;
}

bool startsWork(const Proc& proc, const Snapshot& snapshot) {
  return isClaude(proc) || (isLoginShell(proc) && !carriesOutTask(proc, snapshot)) || isMultiplexer(proc) ||
         proc.app;
}

// Is it a whole session, of a desktop or of a display manager, which is the parent of much and the root of
// nothing? Only told where sessions are.
bool isSession(const Proc& proc, const Snapshot& snapshot) {
  if (proc.session == 0 || isShell(proc)) return false;
  const bool othersChild = proc.ppid >= firstUserPid && parentOf(proc, snapshot) == nullptr;
  return (proc.session == proc.pid && othersChild) ||
         std::ranges::find(sessionPrograms, proc.name()) != sessionPrograms.end();
}

// Did the process leave its parent's session for one of its own, to be a job of its own? A server's workers,
// which are the same program, stay its own.
bool leftSession(const Proc& proc, const Snapshot& snapshot) {
  if (proc.session == 0 || proc.session != proc.pid) return false;
  const Proc* parent = parentOf(proc, snapshot);
  return parent != nullptr && parent->session != 0 && !isShell(*parent) && parent->path != proc.path;
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
    if (parent == nullptr || startsWork(*parent, snapshot_)) {
      result = {current, nullptr, parent};
      break;
    }
    if (isSession(*parent, snapshot_)) {
      result = {current, nullptr, nullptr};
      break;
    }
    current = parent;
  }
  std::for_each(chain.rbegin(), chain.rend(), [&](const Proc* passed) {
    if (leftSession(*passed, snapshot_)) result = {passed, nullptr, result.starter};
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
  } else if (isLoginShell(*by) || isMultiplexer(*by)) {
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
        visits[i].bytes = saturatingAdd(visits[i].bytes, subtree->second);
      } else {
        visits.push_back({child.pid, i, child.footprint, false});
      }
    });
  }
  // Children come after their parents, so going backwards every subtree is complete when it is added.
  for (std::size_t i = visits.size() - 1; i > 0; --i) {
    Visit& parent = visits[visits[i].parent];
    parent.bytes = saturatingAdd(parent.bytes, visits[i].bytes);
    parent.onCycle = parent.onCycle || visits[i].onCycle;
  }
  // Whoever is on a cycle with `top` has the same processes below it, and so the same total.
  const std::uint64_t total = visits.front().bytes;
  for (const Visit& visit : visits) known_[visit.pid] = visit.onCycle ? total : visit.bytes;
  return total;
}

}  // namespace tarnwick
