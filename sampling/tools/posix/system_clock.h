// The real clock. No state; usable from any thread.
#pragma once

#include "sampling/tools/clock.h"

namespace tarnwick {

class SystemClock : public Clock {
 public:
  Timestamp now() override;
  double uptime() override;

  // Signals do not shorten it.
  void sleep(double seconds) override;
};

}  // namespace tarnwick
