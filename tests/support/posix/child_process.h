// A child process of the test that waits to be signalled.
#pragma once

#include <functional>

#include "records/basics.h"

namespace tarnwick {

class ChildProcess {
 public:
  // Starts a child and returns once `body` has returned in it, or has become another program or ended. The
  // child then waits for signals.
  explicit ChildProcess(const std::function<void()>& body = [] {});

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
