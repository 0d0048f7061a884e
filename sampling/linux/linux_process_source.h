// Processes as Linux tells them through /proc, or a recorded copy of it. Processor and wall times are in
// nanoseconds. Nothing here fails, see process_source.h. Used by one thread at a time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "sampling/decode/arguments.h"
#include "sampling/decode/proc_stat.h"
#include "sampling/decode/start_times.h"
#include "sampling/linux/app_slice.h"
#include "sampling/linux/listening_ports.h"
#include "sampling/linux/proc_reader.h"
#include "sampling/linux/process_memory.h"
#include "sampling/linux/stat_cache.h"
#include "sampling/process_source.h"

namespace tarnwick {

struct LinuxProcessOptions {
  std::uint32_t uid = 0;                     // whose processes: the real user's
  std::string procRoot = "/proc";            // any other root is a recording: no clocks, no netlink
  std::string cgroupRoot = usualCgroupRoot;  // where it is seen whether applications have units
  // The name of the application with that id; unset or absent, the id itself is the name.
  std::function<std::optional<std::string>(const std::string& id)> appDisplayName;
};

class LinuxProcessSource : public ProcessSource {
 public:
  explicit LinuxProcessSource(LinuxProcessOptions options);

  void beginPass() override;
  std::vector<Pid> myPids() override;
  std::vector<Pid> candidates() override;
  std::uint64_t wallTime() override;
  std::optional<std::uint64_t> processorTime(Pid pid) override;
  // An ended process that its parent has not asked about yet has none: it is gone for everybody else.
  // An orphan that the user's service manager adopted has parent 1, as if there were no such manager.
  std::optional<ProcessFacts> facts(Pid pid) override;
  std::string path(Pid pid) override;
  // From the process's unit; absent too for what runs in a terminal inside an application's unit.
  std::optional<std::string> app(Pid pid, const std::string& path) override;
  // Without arguments and executable (kernel threads, a first thread that ended) the kernel's name for the
  // process.
  std::vector<std::string> args(Pid pid) override;
  std::optional<ProcessUsage> usage(Pid pid) override;
  std::string cwd(Pid pid) override;
  std::vector<std::uint16_t> listenPorts(Pid pid) override;

  // What start times are reckoned with; never changes. Any thread.
  const ProcClock& clock() const { return clock_; }

 private:
  std::optional<ProcStat> readStat(Pid pid);
  // What earlier checks read, asked whether the process still lives.
  std::optional<ProcStat> stillTrue(Pid pid, const ProcStat& kept);
  // The stat that facts() read, while the questions are about the same process; else a fresh one.
  const std::optional<ProcStat>& statOf(Pid pid);
  // Kernel threads and ended processes have no memory, executable, arguments or folder.
  bool hasProgram(Pid pid);
  std::optional<std::uint64_t> timeFromTicks(const ProcStat& stat) const;
  bool isUserManager(Pid pid);
  std::optional<std::string_view> commandLineBytes(Pid pid);
  bool applicationsHaveUnits();

  LinuxProcessOptions options_;
  bool live_;
  ProcReader reader_;
  ProcessMemory memory_;
  ListeningPorts ports_;
  StatCache stats_;
  const ProcClock clock_;  // read once: the kernel derives the boot time from the clock, and that may be set

  std::vector<Pid> listed_;  // all processes when `listedAt_` was the newest pid, and some that ended since
  std::optional<Pid> listedAt_;  // absent: the list is to be made anew
  Pid statPid_ = 0;              // whose `stat_` is; 0 for nobody's
  std::optional<ProcStat> stat_;
  std::optional<std::uint64_t>
      timeAtFacts_;  // the processor time of `statPid_`, where facts() has asked for it
  std::optional<MemoryUse> memoryAtFacts_;                  // the same for its memory
  std::array<char, ProcReader::longestLink> textBuffer_{};  // of the file or link that is being read
  ArgumentBuffer argumentBuffer_;
  std::unordered_map<Pid, bool> userManagers_;  // what this pass knows of each pid
  std::optional<bool> applicationsHaveUnits_;   // absent until asked for in a pass
};

}  // namespace tarnwick
