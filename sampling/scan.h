// One check of the live machine: two looks at the processes some time apart and everything else in between,
// as one Snapshot. Blocks its caller for about the interval; one thread at a time, never two scans at once.
// Nothing fails as a whole: a source that cannot be read leaves its field at its neutral value.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "records/bench_marks.h"
#include "records/snapshot.h"
#include "sampling/machine_source.h"
#include "sampling/process_table.h"
#include "sampling/tools/clock.h"
#include "sampling/workspace.h"

namespace tarnwick {

class Scan {
 public:
  // What a scan asks; all of it must live longer than the scan.
  struct Sources {
    ProcessTable& processes;
    MachineSource& machine;
    Workspace& workspace;
    Clock& clock;
    BenchMarks& marks;
  };

  // At this much free space or less the system is asked what it could purge, which is slow. Just under 30
  // GiB.
  static constexpr std::int64_t scarceDisk = 32'212'254'719;  // bytes

  // `home` is the user's home folder.
  Scan(const Sources& sources, std::string home);

  // `interval`: seconds between the two looks; 0 does not wait.
  Snapshot scan(double interval);

 private:
  // The processes at the end of an interval, and the share of processor time that was busy in it.
  struct Interval {
    std::map<Pid, Proc> procs;
    double cpuBusy = 0;
  };

  Interval sampleProcesses(double interval);
  void readCounters(Snapshot& snapshot, double cpuBusy);
  void readDisk(Snapshot& snapshot);
  void readMemorySaver(Snapshot& snapshot) const;

  Sources sources_;
  std::string home_;
};

}  // namespace tarnwick
