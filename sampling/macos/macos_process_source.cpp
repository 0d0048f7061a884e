#include "sampling/macos/macos_process_source.h"

#include <libproc.h>
#include <mach/mach_time.h>
#include <sys/proc_info.h>
#include <sys/resource.h>
#include <sys/sysctl.h>
#include <time.h>

#include <array>
#include <limits>
#include <span>
#include <string_view>
#include <utility>

#include "records/app_name.h"
#include "sampling/decode/kernel_records.h"
#include "sampling/decode/processor_times.h"
#include "sampling/macos/kernel_questions.h"

namespace tarnwick {
namespace {

static_assert(sizeof(proc_vnodepathinfo) == 2352);
static_assert(sizeof(Pid) == sizeof(pid_t));

std::optional<rusage_info_v4> resourceUsage(Pid pid) {
  rusage_info_v4 usage{};
  // The interface is declared with a pointer to a pointer, but fills the record itself.
  auto* record = reinterpret_cast<rusage_info_t*>(&usage);
  if (::proc_pid_rusage(pid, RUSAGE_INFO_V4, record) != 0) return std::nullopt;
  return usage;
}

// Under translation the Mach clock of a program counts nanoseconds while the kernel's records go on counting
// the processor's ticks; only this name tells their true frequency. 0 for an untranslated program.
std::uint64_t ticksPerSecondUnderTranslation() {
  if (sysctlValue<int>("sysctl.proc_translated").value_or(0) != 1) return 0;
  constexpr std::uint64_t usual = 24'000'000;
  constexpr std::uint64_t most = 10'000'000'000;
  const std::uint64_t told = sysctlValue<std::uint64_t>("hw.tbfrequency").value_or(0);
  return told > 0 && told <= most ? told : usual;
}

std::optional<std::size_t> argumentBlock(Pid pid, std::span<char> buffer) {
  std::array<int, 3> name{CTL_KERN, KERN_PROCARGS2, pid};
  std::size_t size = buffer.size();
  if (::sysctl(name.data(), static_cast<unsigned>(name.size()), buffer.data(), &size, nullptr, 0) != 0) {
    return std::nullopt;
  }
  return size;
}

}  // namespace

// Answers about one process, in the buffers that its source has for all of them.
class MacosProcessSource::OneProcess final : public Process {
 public:
  OneProcess(MacosProcessSource& source, Pid pid, const ProcessFacts& facts)
      : source_(source), pid_(pid), facts_(facts) {}

  const ProcessFacts& facts() const override { return facts_; }
  std::string path() override;
  std::optional<std::string> app(const std::string& path) override {
    return appName(path, source_.self_.home);
  }
  std::vector<std::string> args() override;
  std::optional<ProcessUsage> usage() override;
  std::string cwd() override;
  std::vector<std::uint16_t> listenPorts() override { return listeningPorts(pid_); }

 private:
  MacosProcessSource& source_;
  Pid pid_;
  ProcessFacts facts_;
};

std::string MacosProcessSource::OneProcess::path() {
  std::vector<char>& buffer = source_.pathBuffer_;
  const int answered = ::proc_pidpath(pid_, buffer.data(), static_cast<std::uint32_t>(buffer.size()));
  if (answered <= 0) return {};
  return textInField(std::string_view(buffer.data(), buffer.size()));
}

std::vector<std::string> MacosProcessSource::OneProcess::args() {
  const auto block =
      source_.argumentBuffer_.read([this](std::span<char> buffer) { return argumentBlock(pid_, buffer); });
  // Of a block that is larger than the buffer the kernel leaves out the beginning: what would be read as
  // arguments is environment.
  if (!block || block->size() >= ArgumentBuffer::mostBytes) return {};
  return argumentsInBlock(*block);
}

std::optional<ProcessUsage> MacosProcessSource::OneProcess::usage() {
  const auto usage = resourceUsage(pid_);
  if (!usage) return std::nullopt;
  const auto time = sumOfTimes(usage->ri_user_time, usage->ri_system_time);
  if (!time) return std::nullopt;
  return ProcessUsage{usage->ri_phys_footprint, usage->ri_resident_size, *time};
}

std::string MacosProcessSource::OneProcess::cwd() {
  proc_vnodepathinfo folders{};
  const int answered = ::proc_pidinfo(pid_, PROC_PIDVNODEPATHINFO, 0, &folders, sizeof folders);
  if (!isWholeRecord(answered, sizeof folders)) return {};
  const auto& path = folders.pvi_cdir.vip_path;
  return textInField(std::string_view(path, sizeof path));
}

MacosProcessSource::MacosProcessSource(Self self)
    : self_(std::move(self)), translatedTicksPerSecond_(ticksPerSecondUnderTranslation()) {}

void MacosProcessSource::beginPass() { argumentBuffer_.beginPass(); }

std::vector<Pid> MacosProcessSource::myPids() {
  std::vector<Pid> pids(mostProcesses);
  constexpr int bytes = mostProcesses * sizeof(Pid);
  const int answered = ::proc_listpids(PROC_UID_ONLY, self_.uid, pids.data(), bytes);
  pids.resize(wholeRecords(answered, sizeof(Pid), mostProcesses));
  return pids;
}

std::uint64_t MacosProcessSource::wallTime() {
  if (translatedTicksPerSecond_ == 0) return ::mach_absolute_time();
  return ticksFromNanoseconds(::clock_gettime_nsec_np(CLOCK_UPTIME_RAW), translatedTicksPerSecond_);
}

std::optional<std::uint64_t> MacosProcessSource::processorTime(Pid pid) {
  const auto usage = resourceUsage(pid);
  return usage ? sumOfTimes(usage->ri_user_time, usage->ri_system_time) : std::nullopt;
}

std::unique_ptr<Process> MacosProcessSource::process(Pid pid) {
  const auto record = processRecord(pid);
  constexpr std::uint64_t latest = std::numeric_limits<std::int64_t>::max();
  // The pid may be somebody else's by now.
  if (!record || record->pbi_uid != self_.uid || record->pbi_start_tvsec > latest) return nullptr;
  return std::make_unique<OneProcess>(*this, pid,
                                      ProcessFacts{static_cast<Pid>(record->pbi_ppid), record->pbi_uid,
                                                   static_cast<std::int64_t>(record->pbi_start_tvsec)});
}

}  // namespace tarnwick
