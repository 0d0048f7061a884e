#include "sampling/linux/linux_process_source.h"

#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <limits>
#include <utility>

#include "sampling/decode/app_unit.h"

namespace tarnwick {
namespace {

constexpr std::uint64_t nanosecondsPerSecond = 1'000'000'000;
constexpr std::string_view liveRoot = "/proc";

std::optional<std::uint64_t> nanoseconds(clockid_t clock) {
  timespec moment{};
  if (::clock_gettime(clock, &moment) != 0 || moment.tv_sec < 0) return std::nullopt;
  return static_cast<std::uint64_t>(moment.tv_sec) * nanosecondsPerSecond +
         static_cast<std::uint64_t>(moment.tv_nsec);
}

// The clock that counts the processor time of all threads of a process, ended ones too. 2 is the kernel's
// CPUCLOCK_SCHED; the C library's own function for this id asks the kernel one question more.
clockid_t processorClock(Pid pid) {
  return static_cast<clockid_t>((~static_cast<std::uint32_t>(pid) << 3U) | 2U);
}

std::uint64_t clockTicksPerSecond() {
  const long ticks = ::sysconf(_SC_CLK_TCK);
  return ticks > 0 ? static_cast<std::uint64_t>(ticks) : 100;
}

std::int64_t bootTimeFromClocks() {
  const std::uint64_t now = nanoseconds(CLOCK_REALTIME).value_or(0) / nanosecondsPerSecond;
  const std::uint64_t up = nanoseconds(CLOCK_BOOTTIME).value_or(0) / nanosecondsPerSecond;
  return now > up ? static_cast<std::int64_t>(now - up) : 0;
}

std::int64_t bootTimeOf(const ProcReader& reader) {
  const auto recorded = bootTime(reader.machineFile("stat"));
  return recorded && *recorded >= 0 ? *recorded : bootTimeFromClocks();
}

// Of a process that is known to be the user's: "systemd --user" is the only such child of the first process.
bool looksLikeUserManager(const ProcStat& stat) { return stat.name == "systemd" && stat.ppid == 1; }

}  // namespace

LinuxProcessSource::LinuxProcessSource(LinuxProcessOptions options)
    : options_(std::move(options)),
      live_(options_.procRoot == liveRoot),
      reader_(options_.procRoot),
      memory_(reader_),
      ports_(reader_, live_),
      stats_(reader_, live_),
      clock_{bootTimeOf(reader_), clockTicksPerSecond()} {}

void LinuxProcessSource::beginPass() {
  memory_.beginPass();
  ports_.beginPass();
  stats_.beginPass();
  statPid_ = 0;
  argumentBuffer_.beginPass();
  userManagers_.clear();
  applicationsHaveUnits_.reset();
}

std::vector<Pid> LinuxProcessSource::myPids() { return reader_.pidsOf(options_.uid, mostProcesses); }

// To ask whose a process is costs more than its clock, but in a recorded tree a time costs a file. The list
// is a tenth of a check: it is made anew only when the kernel has given out a pid since. Asked before the
// list is made, so that a process which misses the list shows in the next answer.
std::vector<Pid> LinuxProcessSource::candidates() {
  if (!live_) return myPids();
  const auto newest = reader_.newest();
  if (!newest || newest != listedAt_) {
    listed_ = reader_.pids();
    listedAt_ = newest;
  }
  return listed_;
}

std::uint64_t LinuxProcessSource::wallTime() { return nanoseconds(CLOCK_MONOTONIC).value_or(0); }

std::optional<std::uint64_t> LinuxProcessSource::processorTime(Pid pid) {
  if (live_) {
    if (const auto time = nanoseconds(processorClock(pid))) return time;
  }
  const auto stat = readStat(pid);
  return stat ? timeFromTicks(*stat) : std::nullopt;
}

std::optional<ProcessFacts> LinuxProcessSource::facts(Pid pid) {
  statPid_ = pid;
  stat_.reset();
  timeAtFacts_.reset();
  memoryAtFacts_.reset();
  const auto folder = reader_.hold(pid);
  if (!folder || folder->uid != options_.uid) return std::nullopt;
  if (const ProcStat* kept = stats_.find(pid, folder->inode)) {
    stat_ = stillTrue(pid, *kept);
  } else {
    stat_ = readStat(pid);
    if (stat_) stats_.keep(pid, folder->inode, *stat_);
  }
  if (!stat_ || stat_->zombie()) return std::nullopt;
  userManagers_[pid] = looksLikeUserManager(*stat_);
  const std::optional<std::int64_t> started = startSeconds(stat_->startTicks, clock_);
  if (!started) return std::nullopt;
  const Pid parent = isUserManager(stat_->ppid) ? 1 : stat_->ppid;
  return ProcessFacts{parent, options_.uid, *started};
}

std::string LinuxProcessSource::path(Pid pid) {
  return hasProgram(pid) ? procLinkPath(reader_.link(pid, "exe", textBuffer_)) : std::string();
}

std::optional<std::string> LinuxProcessSource::app(Pid pid, const std::string& /*path*/) {
  if (!applicationsHaveUnits() || !hasProgram(pid) || statOf(pid)->terminal != 0) return std::nullopt;
  const auto text = reader_.read(pid, "cgroup", textBuffer_);
  const auto unit = text ? appUnitOfCgroup(*text) : std::nullopt;
  auto id = unit ? applicationID(*unit) : std::nullopt;
  if (!id || !options_.appDisplayName) return id;
  return options_.appDisplayName(*id).value_or(*id);
}

std::vector<std::string> LinuxProcessSource::args(Pid pid) {
  if (hasProgram(pid)) {
    const auto bytes = commandLineBytes(pid);
    auto arguments = bytes ? procArguments(*bytes) : std::vector<std::string>();
    if (!arguments.empty() || !path(pid).empty()) return arguments;
  }
  const auto& stat = statOf(pid);
  if (!stat || stat->name.empty()) return {};
  std::string name = stat->name;
  // "kworker/0:1" is no path: without this its last component would pass for the name.
  if (stat->kernelThread()) std::ranges::replace(name, '/', '-');
  return {name};
}

std::optional<ProcessUsage> LinuxProcessSource::usage(Pid pid) {
  const auto& stat = statOf(pid);
  if (!stat) return std::nullopt;
  auto time = std::exchange(timeAtFacts_, std::nullopt);
  if (!time) time = live_ ? processorTime(pid) : timeFromTicks(*stat);
  auto memory = std::exchange(memoryAtFacts_, std::nullopt);
  if (!memory) memory = hasProgram(pid) ? memory_.of(pid) : MemoryUse{};
  if (!time || !memory) return std::nullopt;
  return ProcessUsage{memory->footprint, memory->resident, *time};
}

std::string LinuxProcessSource::cwd(Pid pid) {
  return hasProgram(pid) ? procLinkPath(reader_.link(pid, "cwd", textBuffer_)) : std::string();
}

std::vector<std::uint16_t> LinuxProcessSource::listenPorts(Pid pid) {
  return hasProgram(pid) ? ports_.of(pid) : std::vector<std::uint16_t>();
}

std::optional<ProcStat> LinuxProcessSource::readStat(Pid pid) {
  const auto text = reader_.read(pid, "stat", textBuffer_);
  return text ? procStat(*text) : std::nullopt;
}

// The usage is asked for here already, because it also tells that the process has not ended since: then it
// has no clock, or, as long as its parent has not asked about it, no memory.
std::optional<ProcStat> LinuxProcessSource::stillTrue(Pid pid, const ProcStat& kept) {
  timeAtFacts_ = nanoseconds(processorClock(pid));
  if (!timeAtFacts_) return std::nullopt;
  if (kept.kernelThread()) return kept;
  memoryAtFacts_ = memory_.of(pid);
  return memoryAtFacts_ && memoryAtFacts_->resident > 0 ? kept : readStat(pid);
}

const std::optional<ProcStat>& LinuxProcessSource::statOf(Pid pid) {
  if (statPid_ != pid) {
    stat_ = readStat(pid);
    statPid_ = pid;
    timeAtFacts_.reset();
    memoryAtFacts_.reset();
  }
  return stat_;
}

bool LinuxProcessSource::hasProgram(Pid pid) {
  const auto& stat = statOf(pid);
  return stat && !stat->kernelThread() && !stat->zombie();
}

std::optional<std::uint64_t> LinuxProcessSource::timeFromTicks(const ProcStat& stat) const {
  const std::uint64_t tick = nanosecondsPerSecond / clock_.ticksPerSecond;
  const std::uint64_t most = std::numeric_limits<std::uint64_t>::max() / nanosecondsPerSecond;
  if (stat.userTicks > most / 2 || stat.systemTicks > most / 2) return std::nullopt;
  return (stat.userTicks + stat.systemTicks) * tick;
}

bool LinuxProcessSource::isUserManager(Pid pid) {
  if (pid <= 1) return false;
  const auto known = userManagers_.find(pid);
  if (known != userManagers_.end()) return known->second;
  const auto stat = reader_.belongsTo(pid, options_.uid) ? readStat(pid) : std::nullopt;
  return userManagers_[pid] = stat && looksLikeUserManager(*stat);
}

std::optional<std::string_view> LinuxProcessSource::commandLineBytes(Pid pid) {
  return argumentBuffer_.read([&](std::span<char> buffer) -> std::optional<std::size_t> {
    const auto bytes = reader_.read(pid, "cmdline", buffer);
    if (!bytes) return std::nullopt;
    return bytes->size();
  });
}

bool LinuxProcessSource::applicationsHaveUnits() {
  if (!applicationsHaveUnits_) {
    applicationsHaveUnits_ = appSlice(options_.cgroupRoot, options_.uid).has_value();
  }
  return *applicationsHaveUnits_;
}

}  // namespace tarnwick
