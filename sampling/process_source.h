// What one operating system must answer about processes. Thin on purpose: the order of questions, the
// caches and the arithmetic are in process_table. Nothing here fails: what cannot be had is the neutral
// value named at the function. In the second pass `facts` is the first question about each process, so a
// source may answer the others from what it read then. Used by one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "records/basics.h"

namespace tarnwick {

// The unchanging facts about a process, and its parent.
struct ProcessFacts {
  Pid ppid = 0;
  std::uint32_t uid = 0;     // owner
  std::int64_t started = 0;  // seconds since 1970, whole
};

// What a process uses at this moment.
struct ProcessUsage {
  std::uint64_t footprint = 0;      // bytes the process is charged for
  std::uint64_t resident = 0;       // bytes of its resident set
  std::uint64_t processorTime = 0;  // user + system so far, in the units of wallTime()
};

class ProcessSource {
 public:
  virtual ~ProcessSource() = default;

  // Called once before the questions of a pass; what is cached for one pass is dropped here.
  virtual void beginPass() = 0;

  // Intended: a user with more processes sees the first ones.
  static constexpr std::size_t mostProcesses = 8'192;

  // The user's processes, in the kernel's order, at most `mostProcesses`; empty on failure.
  virtual std::vector<Pid> myPids() = 0;

  // The processes that a pass asks about: at least those of myPids(), in that order. A system that tells
  // whose a process is along with the other facts names others' too; those have no facts.
  virtual std::vector<Pid> candidates() { return myPids(); }

  // A clock that ticks in the same unit as processor times, so that their quotient is in cores.
  virtual std::uint64_t wallTime() = 0;

  // User + system processor time so far; absent when the process is gone or cannot be read.
  virtual std::optional<std::uint64_t> processorTime(Pid pid) = 0;

  // Absent when the process is gone, cannot be read or is not the user's.
  virtual std::optional<ProcessFacts> facts(Pid pid) = 0;

  // The executable's path; empty when it cannot be read.
  virtual std::string path(Pid pid) = 0;

  // The application that the process belongs to; absent for command-line programs and daemons.
  virtual std::optional<std::string> app(Pid pid, const std::string& path) = 0;

  // The command line; empty on failure.
  virtual std::vector<std::string> args(Pid pid) = 0;

  // Absent when the process is gone or cannot be read.
  virtual std::optional<ProcessUsage> usage(Pid pid) = 0;

  // The working directory; empty when it cannot be read.
  virtual std::string cwd(Pid pid) = 0;

  // Ports of the listening TCP sockets, ascending, each once; empty on failure.
  virtual std::vector<std::uint16_t> listenPorts(Pid pid) = 0;
};

}  // namespace tarnwick
