#include "sampling/linux/linux_process_source.h"

#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <limits>
#include <utility>

#include "records/limits.h"
#include "sampling/decode/account_name.h"
#include "sampling/decode/memory_info.h"
#include "system/small_file.h"

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

// Of a process that is known to be the user's: "systemd --user" is the only such child of the first process.
bool looksLikeUserManager(const ProcStat& stat) { return stat.name == "systemd" && stat.ppid == 1; }

std::optional<ProcStat> statOf(const ProcessFiles& files, std::span<char> buffer) {
  const auto text = files.read("stat", buffer);
  return text ? procStat(*text) : std::nullopt;
}

}  // namespace

// Answers about one process with what its source has at hand for all of them.
class LinuxProcessSource::OneProcess final : public Process {
 public:
  OneProcess(LinuxProcessSource& source, ProcessFiles files) : source_(source), files_(std::move(files)) {}

  // To be asked before all others; false when the process is gone.
  bool isThere() { return source_.look(files_, seen_) && !seen_.stat.zombie() && findFacts(); }

  const ProcessFacts& facts() const override { return facts_; }
  std::string path() override { return target("exe"); }
  std::optional<std::string> app(const std::string& path) override;
  std::vector<std::string> args() override;
  std::optional<ProcessUsage> usage() override;
  std::string cwd() override { return target("cwd"); }
  std::vector<std::uint16_t> listenPorts() override {
    return hasProgram() ? source_.ports_.of(files_) : std::vector<std::uint16_t>();
  }

 private:
  bool findFacts();
  // Kernel threads have no memory, executable, arguments or folder.
  bool hasProgram() const { return !seen_.stat.kernelThread(); }
  std::string target(const char* link) {
    return hasProgram() ? procLinkPath(files_.link(link, source_.textBuffer_)) : std::string();
  }

  LinuxProcessSource& source_;
  ProcessFiles files_;
  Look seen_;
  ProcessFacts facts_;
};

bool LinuxProcessSource::OneProcess::findFacts() {
  const ProcStat& stat = seen_.stat;
  const Pid pid = files_.pid();
  source_.families_[pid] = familyOf(stat);
  const std::optional<std::int64_t> started = startSeconds(stat.startTicks, source_.clockOfPass());
  if (!started) return false;
  if (source_.options_.applications != nullptr) source_.options_.applications->stillThere(pid, stat);
  facts_ = {.ppid = source_.wasAdopted(stat, pid) ? 1 : stat.ppid,
            .uid = source_.options_.uid,
            .started = *started,
            .session = stat.session,
            .hasTerminal = stat.terminal != 0};
  return true;
}

std::optional<std::string> LinuxProcessSource::OneProcess::app(const std::string& path) {
  Applications* applications = source_.options_.applications;
  if (applications == nullptr || !hasProgram()) return std::nullopt;
  return applications->of(files_, seen_.stat, path);
}

std::vector<std::string> LinuxProcessSource::OneProcess::args() {
  if (hasProgram()) {
    const auto bytes = source_.commandLine(files_);
    auto arguments = bytes ? procArguments(*bytes) : std::vector<std::string>();
    if (!arguments.empty() || !path().empty()) return arguments;
  }
  std::string name = seen_.stat.name;
  if (name.empty()) return {};
  // "kworker/0:1" is no path: without this its last component would pass for the name.
  if (!hasProgram()) std::ranges::replace(name, '/', '-');
  return {name};
}

std::optional<ProcessUsage> LinuxProcessSource::OneProcess::usage() {
  auto time = std::exchange(seen_.time, std::nullopt);
  if (!time) time = source_.live_ ? source_.processorTime(files_.pid()) : source_.timeFromTicks(seen_.stat);
  auto memory = std::exchange(seen_.memory, std::nullopt);
  if (!memory) memory = hasProgram() ? source_.memory_.of(files_) : MemoryUse{};
  if (!time || !memory) return std::nullopt;
  return ProcessUsage{memory->footprint, memory->resident, *time};
}

LinuxProcessSource::LinuxProcessSource(LinuxProcessOptions options)
    : options_(std::move(options)),
      live_(options_.procRoot == liveRoot),
      reader_(options_.procRoot),
      machine_(reader_),
      memory_(machine_),
      ports_(reader_, live_, options_.limits),
      stats_(reader_, live_),
      clock_{bootTimeFromClocks(), clockTicksPerSecond()} {}

void LinuxProcessSource::beginPass() {
  machine_.beginPass();
  memory_.beginPass();
  ports_.beginPass();
  stats_.beginPass();
  argumentBuffer_.beginPass();
  families_.clear();
  if (options_.applications != nullptr) options_.applications->beginPass();
  clockIsOld_ = true;
}

std::vector<Pid> LinuxProcessSource::myPids() { return reader_.pidsOf(options_.uid, mostProcesses); }

// To ask whose a process is costs more than its clock, but in a recorded tree a time costs a file. The list
// is a tenth of a check: it is made anew only when the kernel has given out a pid since. Asked before the
// list is made, so that a process which misses the list shows in the next answer.
std::vector<Pid> LinuxProcessSource::candidates() {
  if (!live_) return myPids();
  if (!reader_.hasRoom()) return {};
  const auto newest = reader_.newest();
  if (!newest || newest != listedAt_) {
    listed_ = reader_.pids();
    listedAt_ = listed_.empty() ? std::nullopt : newest;
  }
  return listed_;
}

std::uint64_t LinuxProcessSource::wallTime() { return nanoseconds(CLOCK_MONOTONIC).value_or(0); }

std::optional<std::uint64_t> LinuxProcessSource::processorTime(Pid pid) {
  if (live_) {
    if (const auto time = nanoseconds(processorClock(pid))) return time;
  }
  const auto text = reader_.read(pid, "stat", textBuffer_);
  const auto stat = text ? procStat(*text) : std::nullopt;
  return stat ? timeFromTicks(*stat) : std::nullopt;
}

std::optional<std::uint64_t> LinuxProcessSource::shareOfMemory(Pid pid) {
  const auto text = reader_.read(pid, "smaps_rollup", textBuffer_);
  return text ? footprintOfShares(*text) : std::nullopt;
}

// The processor time comes last, because its interval ends with the next question about the clock.
std::optional<StrangerFacts> LinuxProcessSource::stranger(Pid pid) {
  const auto files = reader_.open(pid);
  if (!files || files->uid() == options_.uid) return std::nullopt;
  const auto text = files->read("stat", textBuffer_);
  const auto stat = text ? procStat(*text) : std::nullopt;
  if (!stat || stat->zombie()) return std::nullopt;
  const std::uint64_t resident = memory_.bytes(residentPages(*text));
  auto time = live_ ? nanoseconds(processorClock(pid)) : std::nullopt;
  if (!time) time = timeFromTicks(*stat);
  return StrangerFacts{.uid = files->uid(),
                       .name = stat->name,
                       .resident = resident,
                       .processorTime = time.value_or(0),
                       .started = startSeconds(stat->startTicks, clockOfPass()).value_or(0),
                       .kernel = stat->kernelThread()};
}

// As ProcessMemory reckons where nothing is swapped: what lies in swap only the owner may read.
std::optional<std::uint64_t> LinuxProcessSource::strangerMemory(Pid pid) {
  const auto text = reader_.read(pid, "statm", textBuffer_);
  const auto pages = text ? procPages(*text) : std::nullopt;
  if (!pages) return std::nullopt;
  return memory_.bytes(pages->resident - std::min(pages->shared, pages->resident));
}

std::optional<std::string> LinuxProcessSource::userName(std::uint32_t uid) {
  if (!accounts_) accounts_ = readSmallFile(options_.accounts, mostAccounts).value_or("");
  return accountName(*accounts_, uid);
}

std::unique_ptr<Process> LinuxProcessSource::process(Pid pid) {
  auto files = reader_.open(pid);
  if (!files || files->uid() != options_.uid) return nullptr;
  auto process = std::make_unique<OneProcess>(*this, std::move(*files));
  if (!process->isThere()) return nullptr;
  return process;
}

const ProcClock& LinuxProcessSource::clockOfPass() {
  if (std::exchange(clockIsOld_, false)) clock_.bootTime = machine_.bootTime().value_or(bootTimeFromClocks());
  return clock_;
}

bool LinuxProcessSource::look(const ProcessFiles& files, Look& seen) {
  if (const ProcStat* kept = stats_.find(files.pid(), files.inode())) return stillTrue(files, *kept, seen);
  if (!readStat(files, seen.stat)) return false;
  stats_.keep(files.pid(), files.inode(), seen.stat);
  return true;
}

bool LinuxProcessSource::readStat(const ProcessFiles& files, ProcStat& stat) {
  auto read = statOf(files, textBuffer_);
  if (read) stat = std::move(*read);
  return read.has_value();
}

// The usage is asked for here already, because it also tells that the process has not ended since: then it
// has no clock, or, as long as its parent has not asked about it, no memory.
bool LinuxProcessSource::stillTrue(const ProcessFiles& files, const ProcStat& kept, Look& seen) {
  seen = {.stat = kept, .time = nanoseconds(processorClock(files.pid()))};
  if (!seen.time) return false;
  if (kept.kernelThread()) return true;
  seen.memory = memory_.of(files);
  return (seen.memory && seen.memory->resident > 0) || readStat(files, seen.stat);
}

std::optional<std::uint64_t> LinuxProcessSource::timeFromTicks(const ProcStat& stat) const {
  const std::uint64_t tick = nanosecondsPerSecond / clock_.ticksPerSecond;
  const std::uint64_t most = std::numeric_limits<std::uint64_t>::max() / nanosecondsPerSecond;
  if (stat.userTicks > most / 2 || stat.systemTicks > most / 2) return std::nullopt;
  return (stat.userTicks + stat.systemTicks) * tick;
}

bool LinuxProcessSource::wasAdopted(const ProcStat& stat, Pid pid) {
  if (stat.ppid <= 1) return false;
  const Family parent = family(stat.ppid);
  if (parent.userManager) return true;
  const bool inherited = parent.session == unknownSession || stat.session == parent.session;
  return stat.session != 0 && stat.session != pid && !inherited;
}

LinuxProcessSource::Family LinuxProcessSource::family(Pid pid) {
  const auto known = families_.find(pid);
  if (known != families_.end()) return known->second;
  const auto files = reader_.open(pid);
  const auto stat = files && files->uid() == options_.uid ? statOf(*files, textBuffer_) : std::nullopt;
  return families_[pid] = stat ? familyOf(*stat) : Family{};
}

LinuxProcessSource::Family LinuxProcessSource::familyOf(const ProcStat& stat) {
  return {.session = stat.session, .userManager = looksLikeUserManager(stat)};
}

std::optional<std::string_view> LinuxProcessSource::commandLine(const ProcessFiles& files) {
  return argumentBuffer_.read([&](std::span<char> buffer) -> std::optional<std::size_t> {
    const auto bytes = files.read("cmdline", buffer);
    if (!bytes) return std::nullopt;
    return bytes->size();
  });
}

}  // namespace tarnwick
