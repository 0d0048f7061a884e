#include "sampling/process_table.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "records/shells.h"

namespace tarnwick {
namespace {

// Ascending, because the maps grow cheaply that way; some kernels name the youngest first. No answer depends
// on the order.
std::vector<Pid> inOrder(std::vector<Pid> pids) {
  std::sort(pids.begin(), pids.end());
  return pids;
}

}  // namespace

void ProcessTable::firstPass() {
  source_.beginPass();
  firstWall_ = source_.wallTime();
  firstTimes_.clear();
  const std::vector<Pid> pids = inOrder(source_.candidates());
  firstTimes_.reserve(pids.size());
  for (const Pid pid : pids) {
    if (const auto time = source_.processorTime(pid)) firstTimes_[pid] = *time;
  }
}

PidMap<Proc> ProcessTable::secondPass(Timestamp now) {
  source_.beginPass();
  const std::uint64_t wallNow = source_.wallTime();
  const std::uint64_t wall = wallNow > firstWall_ ? wallNow - firstWall_ : 0;
  PidMap<Proc> procs;
  KnownByPid fresh;
  const std::vector<Pid> pids = inOrder(source_.candidates());
  procs.reserve(pids.size());
  fresh.reserve(pids.size());
  for (const Pid pid : pids) {
    if (procs.size() == ProcessSource::mostProcesses) break;
    const std::unique_ptr<Process> process = source_.process(pid);
    if (process == nullptr) continue;
    const ProcessFacts& facts = process->facts();
    const Known& entry = knowledge(pid, *process, fresh);
    Proc proc;
    proc.pid = pid;
    proc.ppid = facts.ppid;
    proc.uid = facts.uid;
    proc.session = facts.session;
    proc.path = entry.path;
    proc.args = entry.args;
    proc.started = timestamp(static_cast<double>(facts.started));
    proc.app = entry.app;
    proc.terminalShell = facts.session == pid && facts.hasTerminal && isInteractiveShell(proc.name());
    measure(*process, proc, wall);
    if (!proc.app) readSurroundings(*process, proc, now);
    procs[pid] = std::move(proc);
  }
  known = std::move(fresh);
  return procs;
}

const ProcessTable::Known& ProcessTable::knowledge(Pid pid, Process& process, KnownByPid& fresh) {
  const std::int64_t start = process.facts().started;
  if (const auto old = known.find(pid); old != known.end() && old->second.start == start) {
    return fresh[pid] = std::move(old->second);
  }
  Known entry;
  entry.start = start;
  entry.path = process.path();
  entry.app = process.app(entry.path);
  if (!entry.app) entry.args = process.args();
  return fresh[pid] = std::move(entry);
}

void ProcessTable::measure(Process& process, Proc& proc, std::uint64_t wall) {
  const auto usage = process.usage();
  if (!usage) return;
  proc.footprint = usage->footprint;
  proc.resident = usage->resident;
  const auto first = firstTimes_.find(proc.pid);
  if (first == firstTimes_.end() || wall == 0 || usage->processorTime < first->second) return;
  proc.cpu = static_cast<double>(usage->processorTime - first->second) / static_cast<double>(wall);
}

void ProcessTable::readSurroundings(Process& process, Proc& proc, Timestamp now) {
  proc.cwd = process.cwd();
  if (secondsBetween(proc.started, now) > portsAfter) proc.ports = process.listenPorts();
}

}  // namespace tarnwick
