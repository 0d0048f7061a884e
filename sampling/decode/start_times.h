// When the machine and its processes started, as Linux tells it. Takes bytes, never reads.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tarnwick {

// When the machine started, seconds since 1970: the line "btime" of the file /proc/stat. Absent when missing
// or not positive.
std::optional<std::int64_t> bootTime(std::string_view stat);

// What turns clock ticks since the machine's start into times of day.
struct ProcClock {
  std::int64_t bootTime = 0;           // seconds since 1970
  std::uint64_t ticksPerSecond = 100;  // at least 1
};

// When a process started that did so `startTicks` after the machine: seconds since 1970, rounded down; absent
// on overflow. A remedy compares this with what the table said: both must reckon with the same clock, as it
// was when the table was made.
std::optional<std::int64_t> startSeconds(std::uint64_t startTicks, const ProcClock& clock);

}  // namespace tarnwick
