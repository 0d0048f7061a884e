#include "sampling/process_table.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <string_view>
#include <utility>

#include "records/checked.h"
#include "records/limits.h"
#include "records/shells.h"

namespace tarnwick {
namespace {

// Ascending, because the maps grow cheaply that way; some kernels name the youngest first. No answer depends
// on the order.
std::vector<Pid> inOrder(std::vector<Pid> pids) {
  if (!std::is_sorted(pids.begin(), pids.end())) std::sort(pids.begin(), pids.end());
  return pids;
}

// Processes that may well share memory: forked from one, or workers on one segment.
struct Family {
  std::vector<Proc*> members;
  std::uint64_t bytes = 0;
  bool serves = false;  // one of them listens, and is old
};

}  // namespace

ProcessTable::ProcessTable(ProcessSource& source, Checks checks) : source_(source), checks_(checks) {
  if (checks_ == Checks::one) source_.keepNothing();
}

void ProcessTable::firstPass() {
  source_.beginPass();
  firstLooks_.clear();
  const std::vector<Pid> pids = inOrder(source_.candidates());
  firstLooks_.reserve(pids.size());
  for (const Pid pid : pids) {
    const std::uint64_t wall =
        source_.wallTime();  // before the time, so that no work is outside the interval
    if (const auto time = source_.processorTime(pid)) firstLooks_[pid] = {wall, *time};
  }
}

PidMap<Proc> ProcessTable::secondPass(Timestamp now) {
  source_.beginPass();
  PidMap<Proc> procs;
  KnownByPid fresh;
  notMine_.clear();
  roomForTexts_ = mostProcessTexts;
  const std::vector<Pid> pids = inOrder(source_.candidates());
  procs.reserve(pids.size());
  if (checks_ == Checks::many) fresh.reserve(pids.size());
  for (const Pid pid : pids) {
    if (procs.size() == ProcessSource::mostProcesses) break;
    const std::unique_ptr<Process> process = source_.process(pid);
    if (process == nullptr) {
      notMine_.push_back(pid);
      continue;
    }
    const ProcessFacts& facts = process->facts();
    Proc& proc = procs[pid];
    proc.pid = pid;
    proc.ppid = facts.ppid;
    proc.uid = facts.uid;
    proc.session = facts.session;
    proc.started = timestamp(static_cast<double>(facts.started));
    identify(pid, *process, fresh, proc);
    proc.terminalShell = facts.session == pid && facts.hasTerminal && isInteractiveShell(proc.name());
    measure(*process, proc);
    if (!proc.app) readSurroundings(*process, proc, now);
  }
  countSharedOnce(procs, fresh, now);
  known = std::move(fresh);
  return procs;
}

void ProcessTable::identify(Pid pid, Process& process, KnownByPid& fresh, Proc& proc) {
  if (checks_ == Checks::one) {
    ask(process, proc);
    return;
  }
  const Known& entry = knowledge(pid, process, fresh);
  proc.path = entry.path;
  proc.args = entry.args;
  proc.app = entry.app;
}

template <typename Record>
void ProcessTable::limitTexts(Record& record) {
  std::size_t taken = record.path.size();
  for (const std::string& arg : record.args) taken += arg.size() + bytesPerArgument;
  if (taken <= roomForTexts_) {
    roomForTexts_ -= taken;
    return;
  }
  const std::size_t room = std::max(roomForTexts_, fewestProcessTexts);
  taken = 0;
  const auto fits = [&](std::size_t bytes) {
    if (bytes > room - taken) return false;
    taken += bytes;
    return true;
  };
  if (!fits(record.path.size())) record.path.clear();
  std::size_t kept = 0;
  while (kept < record.args.size() && fits(record.args[kept].size() + bytesPerArgument)) ++kept;
  record.args.resize(kept);
  roomForTexts_ -= std::min(taken, roomForTexts_);
}

const ProcessTable::Known& ProcessTable::knowledge(Pid pid, Process& process, KnownByPid& fresh) {
  const std::int64_t start = process.facts().started;
  if (const auto old = known.find(pid); old != known.end() && old->second.start == start) {
    limitTexts(old->second);
    return fresh[pid] = std::move(old->second);
  }
  Known& entry = fresh[pid];
  entry.start = start;
  ask(process, entry);
  return entry;
}

template <typename Record>
void ProcessTable::ask(Process& process, Record& record) {
  record.path = process.path();
  record.app = process.app(record.path);
  if (!record.app) record.args = process.args();
  limitTexts(record);
}

void ProcessTable::measure(Process& process, Proc& proc) {
  const auto usage = process.usage();
  if (!usage) return;
  proc.footprint = believed(usage->footprint);
  proc.resident = believed(usage->resident);
  proc.cpu = coresSince(proc.pid, usage->processorTime);
}

// To be asked right after the processor time was.
double ProcessTable::coresSince(Pid pid, std::uint64_t processorTime) {
  const Look* first = firstLook(pid);
  if (first == nullptr) return 0;
  const std::uint64_t wall = source_.wallTime();
  if (wall <= first->wall || processorTime < first->processorTime) return 0;
  return static_cast<double>(processorTime - first->processorTime) / static_cast<double>(wall - first->wall);
}

// Processes are asked about in the order in which they were looked at, so it is nearly always the next one.
const ProcessTable::Look* ProcessTable::firstLook(Pid pid) {
  const auto looks = firstLooks_.begin();
  if (nextLook_ >= std::ssize(firstLooks_) || looks[nextLook_].first != pid)
    nextLook_ = firstLooks_.find(pid) - looks;
  return nextLook_ == std::ssize(firstLooks_) ? nullptr : &looks[nextLook_++].second;
}

std::vector<OtherProc> ProcessTable::others(bool memory) {
  std::vector<OtherProc> found;
  for (const Pid pid : notMine_) {
    if (found.size() == ProcessSource::mostProcesses) break;
    auto facts = source_.stranger(pid);
    if (!facts) continue;
    const double cpu = coresSince(pid, facts->processorTime);
    found.push_back({.pid = pid,
                     .uid = facts->uid,
                     .name = std::move(facts->name),
                     .resident = believed(facts->resident),
                     .cpu = cpu,
                     .started = timestamp(static_cast<double>(facts->started)),
                     .kernel = facts->kernel});
    if (!memory || facts->kernel) continue;
    if (const auto bytes = source_.strangerMemory(pid)) found.back().footprint = believed(*bytes);
  }
  return found;
}

std::map<std::uint32_t, std::string> ProcessTable::namesOf(const std::vector<OtherProc>& others) {
  std::map<std::uint32_t, std::string> names;
  std::set<std::uint32_t> asked;
  for (const OtherProc& other : others) {
    if (!asked.insert(other.uid).second) continue;
    if (auto name = source_.userName(other.uid)) names[other.uid] = std::move(*name);
  }
  return names;
}

void ProcessTable::countSharedOnce(PidMap<Proc>& procs, KnownByPid& fresh, Timestamp now) {
  std::map<std::string_view, Family> families;  // by application, else by executable
  for (auto& [pid, proc] : procs) {
    if (proc.footprint < worthAsking) continue;
    Family& family = families[proc.app ? *proc.app : proc.path];
    family.members.push_back(&proc);
    family.bytes = saturatingAdd(family.bytes, proc.footprint);
    family.serves = family.serves || !proc.ports.empty();
  }
  for (const auto& [key, family] : families) {
    if (family.members.size() < 2 || family.bytes < (family.serves ? bigServerSum : bigSum)) continue;
    for (Proc* proc : family.members) {
      Known unkept;
      Known& entry = checks_ == Checks::one ? unkept : fresh[proc->pid];
      proc->footprint = withoutOthersShares(*proc, entry, now);
    }
  }
}

std::uint64_t ProcessTable::withoutOthersShares(const Proc& proc, Known& entry, Timestamp now) {
  const std::uint64_t counted = proc.footprint;
  const auto& kept = entry.share;
  const bool alike =
      kept && counted - counted / 16 <= kept->counted && kept->counted <= counted + counted / 16;
  const double age = kept ? secondsBetween(kept->at, now) : 0;
  if (!alike || age < 0 || age > shareSeconds) {
    const auto exact = source_.shareOfMemory(proc.pid);
    entry.share = Share{now, counted, std::min(exact.value_or(counted), counted)};
  }
  const std::uint64_t others = entry.share->counted - entry.share->exact;
  return counted > others ? counted - others : 0;
}

void ProcessTable::readSurroundings(Process& process, Proc& proc, Timestamp now) {
  proc.cwd = process.cwd();
  if (proc.cwd.size() > std::max(roomForTexts_, fewestProcessTexts)) proc.cwd.clear();
  roomForTexts_ -= std::min(proc.cwd.size(), roomForTexts_);
  if (secondsBetween(proc.started, now) > portsAfter) proc.ports = process.listenPorts();
}

}  // namespace tarnwick
