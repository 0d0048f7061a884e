// A child process of the test that waits to be signalled.
#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <functional>

#include "records/basics.h"
#include "records/checked.h"

namespace tarnwick {

class ChildProcess {
 public:
  // Starts a child and returns once `body` has returned in it, or has become another program or ended. The
  // child then waits for signals.
  explicit ChildProcess(const std::function<void()>& body = [] {}) {
    std::array<int, 2> ready{};
    if (::pipe(ready.data()) != 0) fault("no pipe");
    for (const int end : ready) ::fcntl(end, F_SETFD, FD_CLOEXEC);
    pid_ = ::fork();
    if (pid_ < 0) fault("no child");
    ::close(ready[pid_ == 0 ? 0 : 1]);
    if (pid_ == 0) {
      body();
      if (::write(ready[1], "x", 1) != 1) ::_exit(1);
      for (;;) ::pause();
    }
    running_ = true;
    char byte = 0;
    if (::read(ready[0], &byte, 1) < 0) fault("the child did not become ready");
    ::close(ready[0]);
  }

  // Takes over a child that the test started itself.
  static ChildProcess adopt(Pid pid) { return ChildProcess(pid, true); }

  // Kills and reaps it, if that was not done yet.
  ~ChildProcess() {
    if (running_) killed();
  }
  ChildProcess(ChildProcess&&) = delete;  // nor copied

  Pid pid() const { return pid_; }

  // Waits until it has ended and reaps it; the signal that ended it, 0 for none.
  int endedBy() {
    int status = 0;
    if (::waitpid(pid_, &status, 0) != pid_) fault("not our child");
    running_ = false;
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  }

  // Kills it, unless it is ending already, and reaps it; the signal that ended it.
  int killed() {
    ::kill(pid_, SIGKILL);
    return endedBy();
  }

  // Waits until it has ended, without reaping it.
  void waitUntilZombie() const {
    siginfo_t ignored{};
    if (::waitid(P_PID, static_cast<id_t>(pid_), &ignored, WEXITED | WNOWAIT) != 0) fault("not our child");
  }

 private:
  ChildProcess(Pid pid, bool running) : pid_(pid), running_(running) {}

  Pid pid_ = 0;
  bool running_ = false;  // not reaped yet
};

}  // namespace tarnwick
