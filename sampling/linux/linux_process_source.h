// Processes as Linux tells them through /proc, or a recorded copy of it. Processor and wall times are in
// nanoseconds. Nothing here fails, see process_source.h. Used by one thread at a time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "records/pid_map.h"
#include "sampling/decode/arguments.h"
#include "sampling/decode/proc_stat.h"
#include "sampling/decode/start_times.h"
#include "sampling/linux/applications.h"
#include "sampling/linux/listening_ports.h"
#include "sampling/linux/machine_files.h"
#include "sampling/linux/proc_reader.h"
#include "sampling/linux/process_memory.h"
#include "sampling/linux/stat_cache.h"
#include "sampling/process_source.h"

namespace tarnwick {

struct LinuxProcessOptions {
  std::uint32_t uid = 0;                 // whose processes: the real user's
  std::string procRoot = "/proc";        // any other root is a recording: no clocks, no netlink
  Applications* applications = nullptr;  // tells whose a process is; outlives the source. Null: nobody's
  std::string accounts = "/etc/passwd";  // the users that this system knows itself
  CheckLimits* limits = nullptr;         // of the checks that ask; outlives the source. Null: there are none
};

class LinuxProcessSource : public ProcessSource {
 public:
  explicit LinuxProcessSource(LinuxProcessOptions options);

  void keepNothing() override { stats_.close(); }
  void beginPass() override;
  std::vector<Pid> myPids() override;
  std::vector<Pid> candidates() override;
  std::uint64_t wallTime() override;
  std::optional<std::uint64_t> processorTime(Pid pid) override;
  std::optional<std::uint64_t> shareOfMemory(Pid pid) override;
  std::optional<StrangerFacts> stranger(Pid pid) override;
  std::optional<std::uint64_t> strangerMemory(Pid pid) override;
  std::optional<std::string> userName(std::uint32_t uid) override;
  // Null too for one that ended and that its parent has not asked about yet: it is gone for everybody else.
  // An orphan that the user's service manager or another process adopted has parent 1, as if there were no
  // such. What runs in a terminal inside an application's unit belongs to no application. Without arguments
  // and executable (kernel threads, a first thread that ended) the kernel's name for the process is its
  // argument.
  std::unique_ptr<Process> process(Pid pid) override;

  // What start times are reckoned with, by remedies too, so that both mean the same process. Read anew in
  // each pass that meets processes; not to be asked during one.
  const ProcClock& clock() const { return clock_; }

  // What this source reads about the machine, for others who need it in the same pass.
  MachineFiles& machineFiles() { return machine_; }

 private:
  class OneProcess;

  // What was read to find out whether a process is there.
  struct Look {
    ProcStat stat;
    std::optional<std::uint64_t> time = {};  // processor time and memory, where they were asked for
    std::optional<MemoryUse> memory = {};
  };

  static constexpr Pid unknownSession = -1;

  // What matters of a parent; nothing of a process that is not the user's.
  struct Family {
    Pid session = unknownSession;
    bool userManager = false;
  };

  // Each false when the process is gone.
  bool look(const ProcessFiles& files, Look& seen);
  bool readStat(const ProcessFiles& files, ProcStat& stat);
  // What earlier checks read, asked whether the process still lives.
  bool stillTrue(const ProcessFiles& files, const ProcStat& kept, Look& seen);
  const ProcClock& clockOfPass();
  std::optional<std::uint64_t> timeFromTicks(const ProcStat& stat) const;
  // Did its parent only adopt it? The user's service manager does so, and so does whoever has a child of a
  // session that is neither the parent's nor the child's own.
  bool wasAdopted(const ProcStat& stat, Pid pid);
  Family family(Pid pid);
  static Family familyOf(const ProcStat& stat);
  std::optional<std::string_view> commandLine(const ProcessFiles& files);

  LinuxProcessOptions options_;
  bool live_;
  ProcReader reader_;
  MachineFiles machine_;
  ProcessMemory memory_;
  ListeningPorts ports_;
  StatCache stats_;
  // The kernel derives the boot time from the time of day: when that is set, all start times move with it.
  ProcClock clock_;
  bool clockIsOld_ = false;
  std::optional<std::string> accounts_;  // the file of that name; absent until somebody asks

  std::vector<Pid> listed_;  // all processes when `listedAt_` was the newest pid, and some that ended since
  std::optional<Pid> listedAt_;                               // absent: the list is to be made anew
  std::array<char, ProcessFiles::longestLink> textBuffer_{};  // of the file or link that is being read
  ArgumentBuffer argumentBuffer_;
  PidMap<Family> families_;  // what this pass knows of each pid
};

}  // namespace tarnwick
