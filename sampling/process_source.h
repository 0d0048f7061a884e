// What one operating system must answer about processes. Thin on purpose: the order of questions, the
// caches and the arithmetic are in process_table. Nothing here fails: what cannot be had is the neutral
// value named at the function. Used by one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "records/basics.h"

namespace tarnwick {

// The unchanging facts about a process, and its parent as it was asked for.
struct ProcessFacts {
  Pid ppid = 0;
  std::uint32_t uid = 0;     // owner
  std::int64_t started = 0;  // seconds since 1970, whole
  Pid session = 0;           // pid of its session's leader; 0 where the system does not tell
  bool hasTerminal = false;  // false too where the system does not tell
};

// What a process uses at this moment.
struct ProcessUsage {
  std::uint64_t footprint = 0;      // bytes the process is charged for
  std::uint64_t resident = 0;       // bytes of its resident set
  std::uint64_t processorTime = 0;  // user + system so far, in the units of wallTime()
};

// What everybody may read about a process of somebody else.
struct StrangerFacts {
  std::uint32_t uid = 0;            // owner
  std::string name;                 // the kernel's
  std::uint64_t resident = 0;       // bytes of its resident set
  std::uint64_t processorTime = 0;  // as in ProcessUsage
  std::int64_t started = 0;         // seconds since 1970, whole; 0 when unknown
  bool kernel = false;              // a thread of the kernel's own
};

// One process of the user, asked for in the second pass. Each question stands for itself, in any order. What
// was read on the way is kept here and goes with the object. Not to outlive its source or the pass.
class Process {
 public:
  virtual ~Process() = default;

  virtual const ProcessFacts& facts() const = 0;

  // The executable's path; empty when it cannot be read.
  virtual std::string path() = 0;

  // The application that the process belongs to, whose executable is `path`; absent for command-line programs
  // and daemons.
  virtual std::optional<std::string> app(const std::string& path) = 0;

  // The command line; empty on failure.
  virtual std::vector<std::string> args() = 0;

  // Absent when the process is gone or cannot be read.
  virtual std::optional<ProcessUsage> usage() = 0;

  // The working directory; empty when it cannot be read.
  virtual std::string cwd() = 0;

  // Ports of the listening TCP sockets, ascending, each once; empty on failure.
  virtual std::vector<std::uint16_t> listenPorts() = 0;
};

class ProcessSource {
 public:
  virtual ~ProcessSource() = default;

  // Only one check will be made: what a later one would gain by need not be kept.
  virtual void keepNothing() {}

  // Called once before the questions of a pass; what is cached for one pass is dropped here.
  virtual void beginPass() = 0;

  // Intended: a user with more processes sees the first ones.
  static constexpr std::size_t mostProcesses = 8'192;

  // The user's processes, in the kernel's order, at most `mostProcesses`; empty on failure.
  virtual std::vector<Pid> myPids() = 0;

  // The processes that a pass asks about: at least those of myPids(), in that order. A system that tells
  // whose a process is only with its facts names others' too; those are null when asked for.
  virtual std::vector<Pid> candidates() { return myPids(); }

  // A clock that ticks in the same unit as processor times, so that their quotient is in cores.
  virtual std::uint64_t wallTime() = 0;

  // User + system processor time so far; absent when the process is gone or cannot be read.
  virtual std::optional<std::uint64_t> processorTime(Pid pid) = 0;

  // The footprint in which memory that the process has together with others counts by its share only, so that
  // the sum over all of them holds it once. Dear: to be asked where that can matter. Absent when it cannot be
  // read, and where a footprint counts nothing twice anyhow.
  virtual std::optional<std::uint64_t> shareOfMemory(Pid /*pid*/) { return std::nullopt; }

  // About a process of another user that candidates() named, at the price of one file; absent when it is
  // gone, is the user's own, or the system tells nobody.
  virtual std::optional<StrangerFacts> stranger(Pid /*pid*/) { return std::nullopt; }

  // Its bytes that no file stands behind and that it shares with nobody, at the price of one more; absent as
  // above.
  virtual std::optional<std::uint64_t> strangerMemory(Pid /*pid*/) { return std::nullopt; }

  // How this system itself, without asking a network, calls a user; absent when it does not know.
  virtual std::optional<std::string> userName(std::uint32_t /*uid*/) { return std::nullopt; }

  // Null when the process is gone, cannot be read or is not the user's.
  virtual std::unique_ptr<Process> process(Pid pid) = 0;
};

}  // namespace tarnwick
