// Times as programs write them into their files. Pure; any text.
#pragma once

#include <optional>
#include <string_view>

#include "records/basics.h"

namespace tarnwick {

// An ISO 8601 date and time with its zone, such as 2026-11-21T05:44:12.345Z or 2026-11-21T07:44:12+02:00;
// absent for anything else, and for a day or a time of day that does not exist.
std::optional<Timestamp> isoTime(std::string_view text);

}  // namespace tarnwick
