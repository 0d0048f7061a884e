#include "tests/support/posix/child_process.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>

#include "records/checked.h"

namespace tarnwick {
namespace {

[[noreturn]] void waitForSignals() {
  for (;;) ::pause();
}

}  // namespace

ChildProcess::ChildProcess(std::optional<unsigned> uid) {
  std::array<int, 2> ready{};
  if (::pipe(ready.data()) != 0) fault("no pipe");
  pid_ = ::fork();
  if (pid_ < 0) fault("no child");
  if (pid_ == 0) {
    if (uid && ::setuid(*uid) != 0) ::_exit(1);
    if (::write(ready[1], "x", 1) != 1) ::_exit(1);
    waitForSignals();
  }
  running_ = true;
  char byte = 0;
  ::close(ready[1]);
  if (::read(ready[0], &byte, 1) != 1) fault("the child did not become ready");
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
