// Time as the program asks for it. Tests hand in a clock that they turn.
#pragma once

#include <string>

#include "records/basics.h"

namespace tarnwick {

// "2026-11-22 14:03:20", where the user is. Any thread.
std::string localTime(Timestamp moment);

class Clock {
 public:
  virtual ~Clock() = default;

  // The current time of day.
  virtual Timestamp now() = 0;

  // Seconds on a clock that only goes forward and stands still while the machine sleeps.
  virtual double uptime() = 0;

  // Blocks the calling thread for that long; returns at once for zero or less.
  virtual void sleep(double seconds) = 0;
};

// The real clock. No state; usable from any thread.
class SystemClock : public Clock {
 public:
  Timestamp now() override;
  double uptime() override;

  // Signals do not shorten it.
  void sleep(double seconds) override;
};

}  // namespace tarnwick
