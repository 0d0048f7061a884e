// Which of the system's clocks only goes forward and stands still while the machine sleeps: systems give
// the standard names different meanings there.
#pragma once

#include <time.h>

namespace tarnwick {

clockid_t awakeClock();

}  // namespace tarnwick
