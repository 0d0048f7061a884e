// The thermal zones of Linux, each judged by its own trip points. Takes texts and values, never reads.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "records/snapshot.h"

namespace tarnwick {

// A number alone in its file, such as a temperature in thousandths of a degree Celsius; absent otherwise.
std::optional<std::int64_t> numberAlone(std::string_view text);

// One thermal zone, in thousandths of a degree Celsius. Absent: unreadable, zero or negative, or no such
// trip point; drivers fill trip points that are not set with zero.
struct ThermalZone {
  std::optional<std::int64_t> temperature;
  std::optional<std::int64_t> passive;   // lowest: from here on the processor is slowed
  std::optional<std::int64_t> critical;  // lowest of "critical" and "hot": the machine is about to stop
};

// Takes one trip point into the zone. "active" trip points start fans and do not slow anything.
void addTripPoint(ThermalZone& zone, std::string_view type, std::optional<std::int64_t> temperature);

// How far below its passive trip point a zone counts as warm.
inline constexpr std::int64_t fairMargin = 5000;

// The worst of what each zone is by its own trip points: a battery at 60 degrees may be worse off than a
// processor at 80. Zones without a temperature or without a trip point that slows do not count; nominal when
// none is left.
ThermalState thermalState(const std::vector<ThermalZone>& zones);

}  // namespace tarnwick
