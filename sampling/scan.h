// One check of the live machine: two looks at the processes some time apart and everything else in between,
// as one Snapshot. Blocks its caller for about the interval; one thread at a time, never two scans at once.
// Nothing fails as a whole: a source that cannot be read leaves its field at its neutral value.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "records/bench_marks.h"
#include "records/snapshot.h"
#include "sampling/browser_questions.h"
#include "sampling/engine/docker.h"
#include "sampling/machine_source.h"
#include "sampling/process_table.h"
#include "sampling/workspace.h"
#include "system/check_limits.h"
#include "system/clock.h"
#include "system/files.h"

namespace tarnwick {

// Was the machine there to be seen? Not where the system shows neither processes nor memory: what the rules
// find then, nothing, says nothing.
bool wasSeen(const Snapshot& snapshot);

// Are the processes of other users asked about? Each costs two files.
enum class Everybody {
  whereItMatters,  // where the user's own explain less than half of a busy machine, and then one file each
  asked            // always
};

class Scan {
 public:
  // What a scan asks; all of it must live longer than the scan.
  struct Sources {
    ProcessTable& processes;
    MachineSource& machine;
    Workspace& workspace;
    Clock& clock;
    BenchMarks& marks;
    const Docker& docker;
    std::function<bool()> dockerRuns;  // is there an engine to ask?
    BrowserQuestions& browsers;
    CheckLimits* limits = nullptr;  // of the check; null: it may take as long as it takes
    Files* homeFiles = nullptr;     // for the user's own files; null: they are asked here and now
  };

  // At this much free space or less the system is asked what it could purge, which is slow. Just under 30
  // GiB.
  static constexpr std::int64_t scarceDisk = 32'212'254'719;  // bytes

  // The engine's answer is good for so long, and what a browser told about its tabs; in seconds.
  static constexpr double dockerSeconds = 60;
  static constexpr double tabsSeconds = 30;

  // `home` is the user's home folder.
  Scan(const Sources& sources, std::string home);

  // `interval`: seconds between the two looks; 0 does not wait.
  Snapshot scan(double interval, Everybody everybody = Everybody::whereItMatters);

  // Forgets what the engine and the browsers answered, so that the next scan asks them again.
  void resetCaches();

 private:
  struct DockerAnswer {
    Timestamp at;
    std::vector<Container> list;
    bool whole = true;  // false: the engine left something unanswered, and is asked again by the next check
  };
  struct TabsAnswer {
    Timestamp at;
    std::optional<Tabs> tabs;  // absent answers are kept too
  };

  // The processes at the end of an interval, and the share of processor time that was busy in it.
  struct Interval {
    PidMap<Proc> procs;
    double cpuBusy = 0;
    ContainerInterval containers = {};
  };

  bool dockerIsStale() const;
  void askEngine(const std::vector<ContainerGroup>& measured);
  Interval sampleProcesses(double interval, bool askDocker);
  void readOthers(const ContainerInterval& containers, Everybody everybody, Snapshot& snapshot);
  void readCounters(Snapshot& snapshot, double cpuBusy);
  void readDisk(Snapshot& snapshot);
  void readMemorySaver(Snapshot& snapshot) const;
  void readBrowsers(Snapshot& snapshot);
  std::optional<Tabs> tabsOf(const std::string& browser);

  Sources sources_;
  std::string home_;
  std::optional<DockerAnswer> dockerCache;
  std::map<std::string, TabsAnswer> tabsCache;  // by bundle identifier
};

}  // namespace tarnwick
