#include "sampling/tools/posix/started_tools.h"

#include <signal.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <thread>

namespace tarnwick {
namespace {

// Asks again and again whether something holds, for at most that long.
template <class Condition>
bool holdsWithin(std::chrono::milliseconds longest, Condition holds) {
  const auto limit = std::chrono::steady_clock::now() + longest;
  std::chrono::microseconds pause{200};
  while (!holds()) {
    if (std::chrono::steady_clock::now() >= limit) return false;
    std::this_thread::sleep_for(pause);
    pause = std::min<std::chrono::microseconds>(pause * 2, std::chrono::milliseconds(10));
  }
  return true;
}

// Whoever is killed and does not hang in the kernel ends within this.
constexpr std::chrono::milliseconds killMoment{250};

// A start takes as long as the tool's file takes to be found.
constexpr std::chrono::milliseconds startMoment{1'000};

}  // namespace

bool StartedTools::beginStart() {
  const MutexLock lock(mutex_);
  layToRestAbandoned();
  if (closed_) return false;
  ++starting_;
  return true;
}

void StartedTools::endStart(pid_t pid) {
  const MutexLock lock(mutex_);
  --starting_;
  if (pid <= 0) return;
  running_.push_back(pid);
  if (closed_) ::kill(-pid, SIGKILL);
}

// Under the lock, so that nobody is killed whose number belongs to somebody else already.
bool StartedTools::hasEnded(pid_t pid, int& status) {
  const MutexLock lock(mutex_);
  const pid_t answer = ::waitpid(pid, &status, WNOHANG);
  if (answer == 0 || (answer < 0 && errno == EINTR)) return false;
  if (answer < 0) status = -1;
  std::erase(running_, pid);
  return true;
}

// Its process group cannot belong to anybody else while it has not been laid to rest.
void StartedTools::end(pid_t pid) {
  ::kill(-pid, SIGKILL);
  int status = 0;
  if (holdsWithin(killMoment, [&] { return hasEnded(pid, status); })) return;
  const MutexLock lock(mutex_);
  std::erase(running_, pid);
  abandoned_.push_back(pid);
}

void StartedTools::endAll() {
  {
    const MutexLock lock(mutex_);
    closed_ = true;
    for (const pid_t pid : running_) ::kill(-pid, SIGKILL);
  }
  holdsWithin(startMoment, [this] {
    const MutexLock lock(mutex_);
    return starting_ == 0;
  });
}

void StartedTools::layToRestAbandoned() {
  std::erase_if(abandoned_, [](pid_t pid) { return ::waitpid(pid, nullptr, WNOHANG) != 0; });
}

}  // namespace tarnwick
