// How large a part of the machine something takes, as impact and thresholds count it.
#pragma once

#include <algorithm>
#include <cstdint>

#include "records/snapshot.h"

namespace tarnwick {

// From here on something counts as busy, in cores' worth of work.
inline constexpr double busyCores = 1.0;

// Bytes as a share of the installed memory; memory that is unknown counts as one byte.
inline double memoryShare(std::uint64_t bytes, const Snapshot& snapshot) {
  return static_cast<double>(bytes) / static_cast<double>(std::max<std::uint64_t>(snapshot.ram, 1));
}

// Cores' worth of work as a share of all cores; a count below 1 counts as 1.
inline double processorShare(double cores, const Snapshot& snapshot) {
  return cores / std::max(snapshot.cores, 1);
}

}  // namespace tarnwick
