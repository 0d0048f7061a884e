// Processor time in the units of two kernels. Takes bytes and values, never asks the system.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tarnwick {

// Processor ticks since the machine started, summed over all processors.
struct CpuTicks {
  std::uint64_t busy = 0;
  std::uint64_t total = 0;  // busy and idle
};

// The sum line "cpu " of the file /proc/stat; zeros when it is missing or its sum overflows.
CpuTicks cpuTicksFromStat(std::string_view stat);

// How many processors a list such as "0-3,5" names, from the file /sys/devices/system/cpu/online; 0 when it
// is no such list.
int processorsInList(std::string_view list);

// User + system time, or any other sum of two readings; absent when it does not fit.
std::optional<std::uint64_t> sumOfTimes(std::uint64_t user, std::uint64_t system);

// Nanoseconds as ticks of a counter of that frequency. Whole seconds are exact and nothing overflows before
// the result does.
constexpr std::uint64_t ticksFromNanoseconds(std::uint64_t nanoseconds, std::uint64_t ticksPerSecond) {
  constexpr std::uint64_t nanosecondsPerSecond = 1'000'000'000;
  const std::uint64_t rest = nanoseconds % nanosecondsPerSecond;
  return nanoseconds / nanosecondsPerSecond * ticksPerSecond + rest * ticksPerSecond / nanosecondsPerSecond;
}

// A counter that the kernel keeps in 32 bits and lets wrap, widened: right as long as it is read at least
// once in 2^32 ticks.
class WrappingCounter {
 public:
  // Everything counted so far, up to and with this reading.
  std::uint64_t advanceTo(std::uint32_t reading) {
    total_ += reading - last_;  // the difference wraps in 32 bits like the counter
    last_ = reading;
    return total_;
  }

 private:
  std::uint32_t last_ = 0;
  std::uint64_t total_ = 0;
};

}  // namespace tarnwick
