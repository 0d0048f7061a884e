// Dates as the user reads them. Answered by each system's own file; any thread.
#pragma once

#include <string>

#include "records/basics.h"

namespace tarnwick {

// The moment in the user's language and time zone, with a medium date and a short time, such as
// "Nov 21, 2026, 5:44 AM". Never empty.
std::string localMediumDate(Timestamp moment);

}  // namespace tarnwick
