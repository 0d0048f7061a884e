#include "system/posix/ending_signals.h"

#include <pthread.h>
#include <unistd.h>

#include <array>
#include <system_error>

namespace tarnwick {
namespace {

constexpr std::array<int, 3> endings{SIGINT, SIGTERM, SIGHUP};

bool isIgnored(int signal) {
  struct sigaction action {};
  return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

// As if it had come with nobody to catch it.
void endBy(int signal) {
  sigset_t one;
  sigemptyset(&one);
  sigaddset(&one, signal);
  struct sigaction usual {};
  usual.sa_handler = SIG_DFL;
  ::sigaction(signal, &usual, nullptr);
  ::pthread_sigmask(SIG_UNBLOCK, &one, nullptr);
  ::kill(::getpid(), signal);
}

}  // namespace

// Blocked here, the signals are blocked in every thread that is started later, and wait for the one that
// asks.
void EndingSignals::watch() {
  std::call_once(begun_, [this] {
    sigemptyset(&watched_);
    for (const int signal : endings) {
      if (!isIgnored(signal)) sigaddset(&watched_, signal);
    }
    ::pthread_sigmask(SIG_BLOCK, &watched_, &maskBefore_);
    try {
      waiting_ = std::thread([this] { wait(); });
    } catch (const std::system_error&) {
      ::pthread_sigmask(SIG_SETMASK, &maskBefore_, nullptr);  // no thread to be had: they end us at once
    }
  });
}

EndingSignals::~EndingSignals() {
  if (!waiting_.joinable()) return;
  over_ = true;
  ::pthread_kill(waiting_.native_handle(), SIGURG);
  waiting_.join();
  ::pthread_sigmask(SIG_SETMASK, &maskBefore_, nullptr);
}

// The urgent signal, which means nothing to this program, is how the thread itself is woken. It has to be
// caught: a signal that would be ignored may be dropped before whoever waits for it hears of it.
void EndingSignals::wait() {
  struct sigaction caught {};
  caught.sa_handler = [](int) {};
  caught.sa_flags = SA_RESTART;
  ::sigaction(SIGURG, &caught, nullptr);
  sigset_t awaited = watched_;
  sigaddset(&awaited, SIGURG);
  ::pthread_sigmask(SIG_BLOCK, &awaited, nullptr);
  for (int signal = 0; !over_;) {
    if (::sigwait(&awaited, &signal) != 0 || signal == SIGURG) continue;
    beforeTheEnd_();
    endBy(signal);
  }
}

}  // namespace tarnwick
