#include "sampling/tools/posix/awake_clock.h"

namespace tarnwick {

// CLOCK_MONOTONIC goes on during sleep here.
clockid_t awakeClock() { return CLOCK_UPTIME_RAW; }

}  // namespace tarnwick
