// What the program does when it is told to end: a key in the terminal (INT), the terminal's closing (HUP),
// the system or the user (TERM). Something is done first, such as ending whom we have started; then the
// program ends by the signal, as if nobody had caught it. A signal that the program was started without
// (nohup) stays ignored.
#pragma once

#include <signal.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>

namespace tarnwick {

class EndingSignals {
 public:
  // `beforeTheEnd` runs on a thread of its own, whatever the others do. It must be quick.
  explicit EndingSignals(std::function<void()> beforeTheEnd) : beforeTheEnd_(std::move(beforeTheEnd)) {}
  ~EndingSignals();
  EndingSignals(const EndingSignals&) = delete;
  EndingSignals& operator=(const EndingSignals&) = delete;

  // From now on; the second time nothing. While no other thread runs: the system would hand it the signal. A
  // second thread makes every call to the system dearer, so it is only started when there is somebody to end.
  void watch();

 private:
  void wait();

  const std::function<void()> beforeTheEnd_;
  std::once_flag begun_;
  sigset_t watched_{};
  sigset_t maskBefore_{};
  std::atomic<bool> over_ = false;  // nobody waits for signals any more
  std::thread waiting_;             // does not run before watch(), and where no thread could be started
};

}  // namespace tarnwick
