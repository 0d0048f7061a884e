#include "sampling/tools/posix/awake_clock.h"

namespace tarnwick {

clockid_t awakeClock() { return CLOCK_MONOTONIC; }

}  // namespace tarnwick
