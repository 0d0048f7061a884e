// What several threads may use, but never two at once: nobody waits here, a second one is a fault. The
// thread-safety analysis takes a turn for a lock.
#pragma once

#include <atomic>

#include "records/checked.h"
#include "system/thread_annotations.h"

namespace tarnwick {

class TARNWICK_CAPABILITY("turn") OneAtATime {
 public:
  void begin() TARNWICK_ACQUIRE() {
    if (taken_.exchange(true)) fault("two threads at once where one may be");
  }
  void end() TARNWICK_RELEASE() { taken_.store(false); }

 private:
  std::atomic<bool> taken_ = false;
};

// Somebody's turn, for as long as it lives.
class TARNWICK_SCOPED_CAPABILITY Turn {
 public:
  explicit Turn(OneAtATime& place) TARNWICK_ACQUIRE(place) : place_(place) { place_.begin(); }
  ~Turn() TARNWICK_RELEASE() { place_.end(); }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

 private:
  OneAtATime& place_;
};

}  // namespace tarnwick
