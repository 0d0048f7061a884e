// The rule about development servers that were left running, one finding per project.

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "diagnosis/attribution.h"
#include "diagnosis/detect.h"
#include "diagnosis/machine_share.h"
#include "diagnosis/process_kinds.h"
#include "diagnosis/stack_wording.h"
#include "records/checked.h"
#include "records/formatted.h"
#include "records/utf8.h"
#include "records/wording.h"

namespace tarnwick {
namespace {

constexpr double forgottenSeconds = 43'200;
constexpr std::size_t tellingCharacters = 5;  // a shorter folder name would catch unrelated containers

// A worker that inherited its parent's listening socket is part of the parent.
bool sharesParentsPort(const Proc& proc, const Snapshot& snapshot) {
  const auto parent = snapshot.procs.find(proc.ppid);
  if (parent == snapshot.procs.end() || parent->second.ports.empty()) return false;
  const std::set<std::uint16_t> ports(parent->second.ports.begin(), parent->second.ports.end());
  return std::any_of(proc.ports.begin(), proc.ports.end(),
                     [&](std::uint16_t port) { return ports.contains(port); });
}

bool isBelow(std::string_view path, std::string_view folder) {
  return path.starts_with(folder) && path.substr(folder.size()).starts_with('/');
}

bool isForgottenServer(const Proc& proc, const Snapshot& snapshot, const Self& self) {
  return !proc.ports.empty() && !proc.app && isBelow(proc.cwd, self.home) && !isInLibrary(proc.cwd, self) &&
         secondsBetween(proc.started, snapshot.now) > forgottenSeconds && !sharesParentsPort(proc, snapshot);
}

// Forgotten servers by project folder, each project's in ascending pid.
std::map<std::string, std::vector<const Proc*>> serversByProject(const Snapshot& snapshot,
                                                                 Surroundings& surroundings) {
  const Self& self = surroundings.self();
  std::map<std::string_view, std::string> roots;  // by working directory
  std::map<std::string, std::vector<const Proc*>> projects;
  for (const auto& [pid, proc] : snapshot.procs) {
    if (!isForgottenServer(proc, snapshot, self)) continue;
    const auto [root, isNew] = roots.try_emplace(proc.cwd);
    if (isNew) root->second = projectRoot(proc.cwd, surroundings);
    projects[root->second].push_back(&proc);
  }
  return projects;
}

std::vector<const Container*> containersOf(const std::string& project, const Snapshot& snapshot) {
  std::vector<const Container*> found;
  if (characterCount(project) < tellingCharacters) return found;
  for (const Container& container : snapshot.containers) {
    if (container.name.find(project) != std::string::npos) found.push_back(&container);
  }
  return found;
}

// The parts of the rule that all projects of one run share.
struct Run {
  explicit Run(const Snapshot& s) : snapshot(s), starters(s), memory(s) {}

  const Snapshot& snapshot;
  Starters starters;
  TreeMemory memory;
};

ProjectStack stackOf(const std::string& root, const std::vector<const Proc*>& servers, Run& run,
                     Surroundings& surroundings) {
  ProjectStack stack{.root = root, .name = std::string(lastPathComponent(root))};
  for (const Proc* server : servers) {  // in ascending pid, the order of the snapshot's memory
    stack.servers.push_back({server, serverKind(*server)});
    stack.bytes = saturatingAdd(stack.bytes, run.memory.of(*server));
  }
  std::stable_sort(stack.servers.begin(), stack.servers.end(),
                   [](const StackServer& a, const StackServer& b) {
                     return a.proc->ports.front() < b.proc->ports.front();
                   });
  stack.containers = containersOf(stack.name, run.snapshot);
  for (const Container* container : stack.containers)
    stack.bytes = saturatingAdd(stack.bytes, container->mem);

  const auto isOlder = [](const StackServer& a, const StackServer& b) {
    return a.proc->started < b.proc->started;
  };
  const Proc* oldest = std::min_element(stack.servers.begin(), stack.servers.end(), isOlder)->proc;
  stack.age = secondsBetween(oldest->started, run.snapshot.now);
  stack.start = run.starters.of(*oldest);
  if (stack.start.claude) stack.work = surroundings.claudeSession(*stack.start.claude);
  stack.job = surroundings.claudeJob(root);
  if (!stack.job) {
    stack.project = surroundings.git(root);
  } else if (stack.job->jobDir) {
    stack.jobRepository = surroundings.git(*stack.job->jobDir);
  }
  return stack;
}

// Ends the servers and the containers. What hangs below a server ends with it.
Action stopAll(const ProjectStack& stack, const std::set<Pid>& termed) {
  All all;
  for (const StackServer& server : stack.servers) all.fixes.push_back({stopSignal(*server.proc, termed)});
  for (const Container* container : stack.containers) all.fixes.push_back({DockerStop{container->id}});
  const std::size_t count = all.fixes.size();
  return {count == 1 ? "Stop it" : formatted("Stop all {}", count), {std::move(all)}};
}

}  // namespace

std::vector<Finding> stacks(const Snapshot& snapshot, const std::set<Pid>& termed,
                            Surroundings& surroundings) {
  Run run(snapshot);
  std::vector<Finding> found;
  for (auto& [root, servers] : serversByProject(snapshot, surroundings)) {
    const ProjectStack stack = stackOf(root, servers, run, surroundings);
    StackWords words = wordsFor(stack, snapshot, surroundings);
    found.push_back({.id = "stack:" + root,
                     .bucket = Bucket::leftovers,
                     .title = std::move(words.title),
                     .detail = std::move(words.detail),
                     .bytes = stack.bytes,
                     .actions = {stopAll(stack, termed)},
                     .evidence = std::move(words.evidence),
                     .subject = std::move(words.subject),
                     .summary = std::move(words.summary),
                     .metric = size(stack.bytes),
                     .icon = "server.rack",
                     .impact = memoryShare(stack.bytes, snapshot)});
  }
  return found;
}

}  // namespace tarnwick
