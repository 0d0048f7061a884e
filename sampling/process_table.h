// The process table of one check: two passes over a process source, some time apart, make the records. Owns
// what it remembers between checks; the returned map belongs to the caller. Used by one thread at a time.
// Nothing here fails: what the source cannot tell is the neutral value stated at the field of `Proc`.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "records/snapshot.h"
#include "sampling/process_source.h"

namespace tarnwick {

class ProcessTable {
 public:
  // Ports are read only of processes that have run longer than this many seconds: the rules that look at
  // ports are about long-forgotten servers, and ports are the dearest question of all.
  static constexpr double portsAfter = 43'200;

  // `source` must outlive the table.
  explicit ProcessTable(ProcessSource& source) : source_(source) {}

  // Starts the interval over which processor use is measured.
  void firstPass();

  // Ends that interval and reads every process. `now` is the time of day, for the age of processes.
  PidMap<Proc> secondPass(Timestamp now);

 private:
  // What stays true while a pid keeps its start time.
  struct Known {
    std::int64_t start = 0;  // seconds since 1970, whole
    std::string path;
    std::optional<std::string> app;
    std::vector<std::string> args;
  };
  using KnownByPid = PidMap<Known>;

  // The entry of `pid` in `fresh`, valid until the next call: taken over from `known` when the start is the
  // same, else asked for.
  const Known& knowledge(Pid pid, Process& process, KnownByPid& fresh);
  void measure(Process& process, Proc& proc, std::uint64_t wall);
  static void readSurroundings(Process& process, Proc& proc, Timestamp now);

  ProcessSource& source_;
  std::uint64_t firstWall_ = 0;       // in the source's unit of time
  PidMap<std::uint64_t> firstTimes_;  // processor time at the first pass, same unit
  KnownByPid known;                   // exactly the processes of the last second pass
};

}  // namespace tarnwick
