// How long one check may take. Everything that asks outside the program gets the moment by which it must have
// answered; who has not is absent for this check and is written down here. Used by the thread that runs the
// check; deadlines are values, which other threads may ask.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "system/clock.h"

namespace tarnwick {

// So long may a whole check take, the rest between its two looks (1 s) included, in seconds.
inline constexpr double checkLimitSeconds = 8;

// A moment on the clock that only goes forward.
class Deadline {
 public:
  // Never.
  Deadline() = default;

  // So many seconds from now. The clock must outlive it.
  Deadline(Clock& clock, double seconds) : clock_(&clock), moment_(clock.uptime() + seconds) {}

  // Seconds until then, never below 0; infinite when it is never.
  double left() const;

  bool passed() const { return left() <= 0; }

 private:
  Clock* clock_ = nullptr;  // null: never
  double moment_ = 0;       // of uptime()
};

class CheckLimits {
 public:
  // The clock must outlive it.
  explicit CheckLimits(Clock& clock) : clock_(clock) {}

  // A check begins: nobody was left out yet.
  void begin();

  // It is over. What is asked until the next one begins has all the time it wants.
  void end() { deadline_ = Deadline(); }

  // Of the check that runs; never when none does.
  const Deadline& deadline() const { return deadline_; }

  // So many seconds from now, but no later than the check's own.
  Deadline within(double seconds) const;

  // Writes down who has not answered in time, as a user would call it.
  void leaveOut(const std::string& who);

  // Each once, in the order in which they were missed.
  const std::vector<std::string>& leftOut() const { return leftOut_; }

  // How often somebody was left out since the program started; the same one may be so again and again.
  std::size_t misses() const { return misses_; }

 private:
  Clock& clock_;
  Deadline deadline_;
  std::vector<std::string> leftOut_;
  std::size_t misses_ = 0;
};

}  // namespace tarnwick
