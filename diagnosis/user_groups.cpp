#include "diagnosis/user_groups.h"

#include <algorithm>
#include <functional>
#include <map>
#include <unordered_map>
#include <utility>

#include "diagnosis/attribution.h"
#include "diagnosis/browser_names.h"
#include "diagnosis/detect.h"
#include "diagnosis/machine_share.h"
#include "diagnosis/process_groups.h"
#include "records/checked.h"

namespace tarnwick {
namespace {

// What a clock that jumped makes of a share counts as nothing.
double finiteCores(double cpu) {
  constexpr double mostCores = 1e6;
  return cpu > 0 && cpu < mostCores ? cpu : 0;
}

void addUse(UserGroup& group, std::uint64_t bytes, double cpu, std::int64_t count,
            std::optional<Timestamp> since) {
  group.bytes = saturatingAdd(group.bytes, bytes);
  group.cpu += finiteCores(cpu);
  group.count += count;
  if (since && (!group.since || *since < *group.since)) group.since = since;
}

UserGroup groupFrom(UserKind kind, const ProcessGroup& processes) {
  UserGroup group{.kind = kind};
  addUse(group, processes.bytes, processes.cpu, processes.count, processes.oldest->started);
  return group;
}

// Adds a process of which only the group's name and figures will be told; the group takes its name where it
// uses more than the others.
void addNamed(UserGroup& group, std::string_view name, const OtherProc& use, const Snapshot& snapshot) {
  const std::uint64_t bytes = use.footprint.value_or(use.kernel ? 0 : use.resident);
  const std::optional<Timestamp> since =
      use.started > Timestamp{} ? std::optional(use.started) : std::nullopt;
  addUse(group, bytes, use.cpu, 1, since);
  const double share = std::max(memoryShare(bytes, snapshot), processorShare(finiteCores(use.cpu), snapshot));
  if (!group.name.empty() && share <= group.nameShare) return;
  group.name = name;
  group.nameShare = share;
}

// One of root's own that is a thread of the kernel: the first of them, or a child of it.
bool isKernelThread(const Proc& proc, const Snapshot& snapshot) {
  constexpr Pid firstThread = 2;
  if (!proc.path.empty() || proc.resident != 0 || proc.uid != 0) return false;
  const auto first = snapshot.procs.find(firstThread);
  if (first == snapshot.procs.end() || first->second.name() != "kthreadd") return false;
  return proc.pid == firstThread || proc.ppid == firstThread;
}

// Jobs are the same command when they have the same words and the same starter.
struct Command {
  const Proc* root;
  std::optional<std::string> who;
  bool prompt;

  bool operator==(const Command& other) const {
    return root->args == other.root->args && root->path == other.root->path && who == other.who &&
           prompt == other.prompt;
  }
};

struct CommandHash {
  std::size_t operator()(const Command& command) const {
    std::size_t hash = std::hash<std::string_view>()(command.root->path);
    for (const std::string& arg : command.root->args) hash = hash * 31 + std::hash<std::string_view>()(arg);
    return hash;
  }
};

// The parts of one run.
class Grouping {
 public:
  Grouping(const Snapshot& snapshot, Starters& starters, Surroundings& surroundings)
      : snapshot_(snapshot), starters_(starters), surroundings_(surroundings) {}

  std::vector<UserGroup> all() {
    addOwn();
    addContainers();
    addOthers();
    return std::move(groups_);
  }

 private:
  void addOwn();
  void addJobs(const ProcessGroups& processes);
  void addContainers();
  void addOthers();
  // The project that the job serves; absent when it serves none.
  std::optional<std::string> projectOf(const ProcessGroup& job);
  UserGroup& groupOf(const ProcessGroup& job);

  const Snapshot& snapshot_;
  Starters& starters_;
  Surroundings& surroundings_;
  std::vector<UserGroup> groups_;
  std::map<std::string_view, std::string> roots_;  // of projects, by working directory
  std::map<std::string, std::size_t> projects_;    // places in `groups_`, by project
  std::unordered_map<Command, std::size_t, CommandHash> commands_;
};

void Grouping::addOwn() {
  const bool safariRuns = isSafariRunning(snapshot_);
  const Proc* vm = dockerVM(snapshot_);
  const Pid self = surroundings_.self().pid;
  ProcessGroups browsers;
  ProcessGroups rest;
  UserGroup kernel{.kind = UserKind::kernel};
  for (const auto& [pid, proc] : snapshot_.procs) {
    if (pid == self || proc.inContainer) continue;
    if (&proc == vm) {
      UserGroup& machine = groups_.emplace_back(UserGroup{.kind = UserKind::virtualMachine, .roots = {vm}});
      addUse(machine, vm->footprint, vm->cpu, 1, vm->started);
    } else if (isKernelThread(proc, snapshot_)) {
      addNamed(kernel, proc.name(), {.cpu = proc.cpu, .started = proc.started, .kernel = true}, snapshot_);
    } else if (const auto browser = browserOf(proc, safariRuns)) {
      browsers.addTo(*browser, proc);
    } else {
      rest.add(proc, starters_);
    }
  }
  if (kernel.count > 0) groups_.push_back(std::move(kernel));
  for (const auto& [kind, apps] :
       {std::pair(UserKind::browser, &browsers.apps), std::pair(UserKind::application, &rest.apps)}) {
    for (const auto& [name, app] : *apps) groups_.emplace_back(groupFrom(kind, app)).name = name;
  }
  addJobs(rest);
}

std::optional<std::string> Grouping::projectOf(const ProcessGroup& job) {
  const Self& self = surroundings_.self();
  if (job.server == nullptr || !job.server->cwd.starts_with(self.home + "/") ||
      isInLibrary(job.server->cwd, self)) {
    return std::nullopt;
  }
  const auto [root, isNew] = roots_.try_emplace(job.server->cwd);
  if (isNew) root->second = projectRoot(job.server->cwd, surroundings_);
  return root->second;
}

// A new one, or that of the jobs that it belongs to.
UserGroup& Grouping::groupOf(const ProcessGroup& job) {
  if (const auto project = projectOf(job)) {
    const auto [place, isNew] = projects_.try_emplace(*project, groups_.size());
    if (isNew) groups_.push_back({.kind = UserKind::servers, .folder = *project});
    return groups_[place->second];
  }
  Command command{job.root, starters_.of(*job.root).who, isPrompt(*job.root, snapshot_)};
  const bool nameless = job.root->args.empty() && job.root->path.empty();
  const auto [place, isNew] = commands_.try_emplace(std::move(command), groups_.size());
  if (isNew || nameless) return groups_.emplace_back();
  groups_[place->second].kind = UserKind::sameCommand;
  return groups_[place->second];
}

void Grouping::addJobs(const ProcessGroups& processes) {
  for (const auto& [pid, job] : processes.jobs) {
    UserGroup& group = groupOf(job);
    addUse(group, job.bytes, job.cpu, job.count, job.oldest->started);
    if (group.roots.empty()) group.who = starters_.of(*job.root).who;
    group.roots.push_back(job.root);
    if (job.server != nullptr) group.servers.push_back(job.server);
  }
}

void Grouping::addContainers() {
  for (const ContainerUse& use : snapshot_.containerUse) {
    UserGroup& group = groups_.emplace_back(UserGroup{.kind = UserKind::container, .container = &use});
    addUse(group, use.bytes, use.cpu, use.count, std::nullopt);
  }
}

void Grouping::addOthers() {
  std::map<std::uint32_t, UserGroup> users;
  UserGroup kernel{.kind = UserKind::kernel};
  for (const OtherProc& other : snapshot_.others) {
    if (other.inContainer) continue;
    addNamed(other.kernel ? kernel : users[other.uid], other.name, other, snapshot_);
  }
  if (kernel.count > 0) groups_.push_back(std::move(kernel));
  for (auto& [uid, group] : users) {
    group.kind = UserKind::otherUser;
    group.user = uid;
    groups_.push_back(std::move(group));
  }
}

}  // namespace

bool isPrompt(const Proc& proc, const Snapshot& snapshot) {
  if (proc.terminalShell) return true;
  if (!proc.name().starts_with('-')) return false;
  // A login shell's own loops bear its name.
  const auto parent = snapshot.procs.find(proc.ppid);
  return parent == snapshot.procs.end() || parent->second.name() != proc.name();
}

std::vector<UserGroup> userGroups(const Snapshot& snapshot, Starters& starters, Surroundings& surroundings) {
  return Grouping(snapshot, starters, surroundings).all();
}

}  // namespace tarnwick
