// A child process of the test that waits to be signalled.
#pragma once

#include <optional>

#include "records/basics.h"

namespace tarnwick {

class ChildProcess {
 public:
  // Starts a child; as another user when `uid` is given, which takes root.
  explicit ChildProcess(std::optional<unsigned> uid = std::nullopt);

  // Takes over a child that the test started itself.
  static ChildProcess adopt(Pid pid) { return ChildProcess(pid, true); }

  // Kills and reaps it, if that was not done yet.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  Pid pid() const { return pid_; }

  // Waits until it has ended and reaps it; the signal that ended it, 0 for none.
  int endedBy();

  // Kills it, unless it is ending already, and reaps it; the signal that ended it.
  int killed();

  // Waits until it has ended, without reaping it.
  void waitUntilZombie() const;

 private:
  ChildProcess(Pid pid, bool running) : pid_(pid), running_(running) {}

  Pid pid_ = 0;
  bool running_ = false;  // not reaped yet
};

}  // namespace tarnwick
