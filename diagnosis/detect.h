// The diagnosis rules: pure functions from a snapshot (and the few questions of `Surroundings`) to what
// they found. A rule that finds nothing, or lacks its data, returns an empty list; none fails or logs.
#pragma once

#include <vector>

#include "diagnosis/surroundings.h"
#include "records/finding.h"
#include "records/snapshot.h"

namespace tarnwick {

// Below 20 GiB the disk counts as almost full; this is the largest count below.
inline constexpr std::int64_t lowDiskBytes = 21'474'836'479;

// Is the machine so hot that the system slows it down?
bool isHot(const Snapshot& snapshot);

// Is the start-up disk known and below the limit?
bool isDiskLow(const Snapshot& snapshot);

// The machine's state (system_rules.cpp).
std::vector<Finding> heat(const Snapshot& snapshot);
std::vector<Finding> busyServices(const Snapshot& snapshot, const Self& self);
std::vector<Finding> lowDisk(const Snapshot& snapshot);
std::vector<Finding> loginApps(const Snapshot& snapshot, const Self& self);

}  // namespace tarnwick
