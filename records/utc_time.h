// A moment as machines write it. Pure.
#pragma once

#include <string>

#include "records/basics.h"

namespace tarnwick {

// "2026-11-21T08:15:30Z": ISO 8601 in UTC, to the whole second that has begun. A moment outside the years 0
// to 9999 becomes the nearest one inside.
std::string utcTime(Timestamp moment);

}  // namespace tarnwick
