// Counters of the machine as a whole, as every system has them.
#pragma once

#include <cstdint>

namespace tarnwick {

// Processor ticks since the machine started, summed over all processors.
struct CpuTicks {
  std::uint64_t busy = 0;
  std::uint64_t total = 0;  // busy and idle
};

struct DiskSpace {
  std::int64_t free = 0;   // bytes this user can still write
  std::int64_t total = 0;  // bytes
};

}  // namespace tarnwick
