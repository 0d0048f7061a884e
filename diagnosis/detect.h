// The diagnosis rules: pure functions from a snapshot (and the few questions of `Surroundings`) to what
// they found. A rule that finds nothing, or lacks its data, returns an empty list; none fails or logs.
#pragma once

#include <set>
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

// Browsers (browser_rules.cpp). Here and below `termed` holds the pids that a remedy was already aimed at:
// the remedy for them is to force.
std::vector<Finding> browsers(const Snapshot& snapshot);
std::vector<Finding> testBrowsers(const Snapshot& snapshot, const std::set<Pid>& termed, const Self& self);

// Busy processes, and those that keep the machine awake (cpu_rules.cpp).
std::vector<Finding> cpuHogs(const Snapshot& snapshot, Surroundings& surroundings);
std::vector<Finding> caffeinates(const Snapshot& snapshot, const std::set<Pid>& termed,
                                 Surroundings& surroundings);

// The process that is Docker's virtual machine: it belongs to the docker rule alone. Null when there is none.
const Proc* dockerVM(const Snapshot& snapshot);

// What ends that machine with all its containers.
Action quitDocker(const Snapshot& snapshot);

// Development machinery that stays up (docker_rules.cpp).
std::vector<Finding> docker(const Snapshot& snapshot);
std::vector<Finding> simulators(const Snapshot& snapshot, Surroundings& surroundings);

// Forgotten development servers, one finding per project (stacks_rule.cpp).
std::vector<Finding> stacks(const Snapshot& snapshot, const std::set<Pid>& termed,
                            Surroundings& surroundings);

}  // namespace tarnwick
