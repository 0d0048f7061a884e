// The texts in which Linux tells about the whole machine, made into values. Nothing here reads; a text
// that is cut, foreign or hostile gives the absent or zero value named at the function. Sizes are bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "records/snapshot.h"
#include "sampling/decode/machine_counters.h"

namespace tarnwick {

// The sum line "cpu " of /proc/stat; zeros when it is missing or its sum overflows.
CpuTicks cpuTicksFromStat(std::string_view stat);

// "btime" of /proc/stat, seconds since 1970; absent when missing or not positive.
std::optional<std::int64_t> bootTimeFromStat(std::string_view stat);

// What /proc/meminfo says; a field that is missing or too large for bytes is absent.
struct MemoryInfo {
  std::optional<std::uint64_t> total;
  std::optional<std::uint64_t> available;  // free, or droppable without swapping
  std::optional<std::uint64_t> swapTotal;
  std::optional<std::uint64_t> swapFree;
};

MemoryInfo memoryInfo(std::string_view meminfo);

// Swap in use; 0 when one side is unknown or more is free than there is.
std::uint64_t swapUsed(const MemoryInfo& memory);

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

// The state of the hottest zone by its own trip points; of equally hot zones, the worse state. Zones without
// a temperature or without a trip point that slows do not count; nominal when none is left.
ThermalState thermalState(const std::vector<ThermalZone>& zones);

// Space in bytes from block counts; zeros when a product does not fit.
DiskSpace diskSpace(std::uint64_t availableBlocks, std::uint64_t blocks, std::uint64_t blockSize);

}  // namespace tarnwick
