// How hard the machine is pressed for memory, from two files of Linux. Takes bytes and values, never reads.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "sampling/decode/memory_info.h"

namespace tarnwick {

// Pressure levels as in Snapshot::pressure, from the stall shares of the last 10 seconds. "full" is the share
// of time in which every runnable task waited for memory: at 10 % the whole machine hesitates, which is felt
// in every window. "some" is the share in which at least one task waited: at 10 % a program is slow, the
// machine is not yet. A build that fits stays below 1 % on both.
inline constexpr double fullStallCritical = 10.0;  // percent of wall time
inline constexpr double someStallWarning = 10.0;

// From /proc/pressure/memory; absent when neither share is there (a kernel without the accounting).
std::optional<std::int32_t> pressureFromStalls(std::string_view stalls);

// Where stalls are not accounted: the part of memory that can still be had without swapping. Below a tenth
// the page cache is being eaten and reads go back to the disk; below a twentieth the reclaim itself costs.
inline constexpr double availableCritical = 0.05;  // share of total
inline constexpr double availableWarning = 0.10;

// Absent when total or available is unknown.
std::optional<std::int32_t> pressureFromAvailable(const MemoryInfo& memory);

}  // namespace tarnwick
