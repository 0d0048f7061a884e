// Signals that reach only the very process that was meant. A pid may pass to another process at any moment,
// so the process is held by a handle first, then looked at, and the signal goes through the handle: whoever
// has the pid by then does not matter. Used by one thread at a time.
#pragma once

#include <cstdint>
#include <optional>

#include "app/remedies/system_targets.h"
#include "records/basics.h"
#include "sampling/decode/start_times.h"
#include "sampling/linux/proc_reader.h"

namespace tarnwick {

class LinuxSignals {
 public:
  // Kernels before 5.3 and some sandboxes have no handles: there the process is looked at right before.
  enum class Road { handleWherePossible, pidOnly };

  // `uid`: whose processes may be signalled. `clock`: the one that the process table uses;
  // outlives the object and may be set between two calls.
  LinuxSignals(std::uint32_t uid, const ProcClock& clock, Road road = Road::handleWherePossible);

  // Refused for a pid below 2 (without asking the system), a process that has ended, and one of another
  // user or start time.
  SignalOutcome send(const Signal& signal) const;

  // When the user's process started; absent when it has ended or belongs to somebody else.
  std::optional<Timestamp> started(Pid pid) const;

 private:
  bool isTheOne(const Signal& signal) const;
  SignalOutcome sendThroughHandle(int handle, const Signal& signal) const;
  SignalOutcome sendByPid(const Signal& signal) const;

  std::uint32_t uid_;
  const ProcClock& clock_;
  Road road_;
  ProcReader reader_;
};

}  // namespace tarnwick
