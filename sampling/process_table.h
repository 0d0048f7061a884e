// The process table of one check: two passes over a process source, some time apart, make the records. Owns
// what it remembers between checks; the returned map belongs to the caller. Used by one thread at a time.
// Nothing here fails: what the source cannot tell is the neutral value stated at the field of `Proc`.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "records/snapshot.h"
#include "sampling/process_source.h"

namespace tarnwick {

// How many checks a table is made for. For one alone nothing is remembered, which is a part of its cost.
enum class Checks { many, one };

class ProcessTable {
 public:
  // Ports are read only of processes that have run longer than this many seconds: the rules that look at
  // ports are about long-forgotten servers, and ports are the dearest question of all.
  static constexpr double portsAfter = 43'200;

  // Whether processes count shared memory twice is asked only where it could change what is said: of those of
  // one application or executable that together hold as much as this, or as much as that where one of them is
  // a server old enough for a card. Smaller processes have nothing worth the question. In bytes.
  static constexpr std::uint64_t bigSum = std::uint64_t{256} << 20U;
  static constexpr std::uint64_t bigServerSum = std::uint64_t{32} << 20U;
  static constexpr std::uint64_t worthAsking = std::uint64_t{512} << 10U;

  // An answer is good for so long while the process grows and shrinks by no more than a sixteenth; seconds.
  static constexpr double shareSeconds = 60;

  // `source` must outlive the table.
  explicit ProcessTable(ProcessSource& source, Checks checks = Checks::many);

  // Starts the intervals over which processor use is measured.
  void firstPass();

  // Ends them and reads every process. `now` is the time of day, for the age of processes.
  PidMap<Proc> secondPass(Timestamp now);

  // The processes of other users, to be asked for after the second pass, over the same intervals; ascending,
  // the first `ProcessSource::mostProcesses`. Empty where they cannot be read.
  // `memory`: with what each of them holds alone, too.
  std::vector<OtherProc> others(bool memory = false);

  // The names of their owners.
  std::map<std::uint32_t, std::string> namesOf(const std::vector<OtherProc>& others);

 private:
  // What a process was found to hold of the memory that it shares.
  struct Share {
    Timestamp at;
    std::uint64_t counted = 0;  // footprint with everything shared in it
    std::uint64_t exact = 0;    // with its share only, never more
  };

  // What stays true while a pid keeps its start time.
  struct Known {
    std::int64_t start = 0;  // seconds since 1970, whole
    std::string path;
    std::optional<std::string> app;
    std::vector<std::string> args;
    std::optional<Share> share = {};
  };
  using KnownByPid = PidMap<Known>;

  // Asks for what stays true, into a `Known` or a `Proc`.
  template <typename Record>
  void ask(Process& process, Record& record);
  // Fills it in.
  void identify(Pid pid, Process& process, KnownByPid& fresh, Proc& proc);
  // The entry of `pid` in `fresh`, valid until the next call: taken over from `known` when the start is the
  // same, else asked for.
  const Known& knowledge(Pid pid, Process& process, KnownByPid& fresh);
  // Cuts what is too long for what is left of the room for texts, and takes the rest off it.
  template <typename Record>
  void limitTexts(Record& record);
  void measure(Process& process, Proc& proc);
  double coresSince(Pid pid, std::uint64_t processorTime);
  void countSharedOnce(PidMap<Proc>& procs, KnownByPid& fresh, Timestamp now);
  std::uint64_t withoutOthersShares(const Proc& proc, Known& entry, Timestamp now);
  void readSurroundings(Process& process, Proc& proc, Timestamp now);

  // The first look at a process, both in the source's unit of time. Each has an interval of its own: on a
  // machine that has no time for us a pass takes long, and the work of the whole pass would be booked on the
  // planned interval.
  struct Look {
    std::uint64_t wall = 0;
    std::uint64_t processorTime = 0;
  };

  const Look* firstLook(Pid pid);  // null when there was none

  ProcessSource& source_;
  const Checks checks_;
  PidMap<Look> firstLooks_;
  std::ptrdiff_t nextLook_ = 0;   // the one behind the last that was asked for
  std::size_t roomForTexts_ = 0;  // bytes, in this pass
  std::vector<Pid> notMine_;      // who was asked about in the second pass and was no process of the user's
  KnownByPid known;               // exactly the processes of the last second pass
};

}  // namespace tarnwick
