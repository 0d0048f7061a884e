#include "tests/support/posix/child_process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>

#include "records/checked.h"

namespace tarnwick {

ChildProcess::ChildProcess(const std::function<void()>& body) {
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

ChildProcess::~ChildProcess() {
  if (running_) killed();
}

int ChildProcess::endedBy() {
  int status = 0;
  if (::waitpid(pid_, &status, 0) != pid_) fault("not our child");
  running_ = false;
  return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}

int ChildProcess::killed() {
  ::kill(pid_, SIGKILL);
  return endedBy();
}

void ChildProcess::waitUntilZombie() const {
  siginfo_t ignored{};
  if (::waitid(P_PID, static_cast<id_t>(pid_), &ignored, WEXITED | WNOWAIT) != 0) fault("not our child");
}

}  // namespace tarnwick
