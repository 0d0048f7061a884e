// The pipeline: one snapshot through the eleven rules, in fixed order, into one sorted list.
#pragma once

#include <set>
#include <string_view>
#include <vector>

#include "diagnosis/surroundings.h"
#include "records/bench_marks.h"
#include "records/finding.h"
#include "records/snapshot.h"

namespace tarnwick {

// What the rules find, highest impact first, equal impacts by id (byte order), equal ids in rule order.
// No shown text holds a line end, so that no name says a line of its own wherever findings are printed,
// copied or drawn; evidence keeps its lines.
// `termed` holds the pids that a remedy was already aimed at in this run. Appends one mark per rule.
// Runs on the calling thread; never fails.
std::vector<Finding> findings(const Snapshot& snapshot, const std::set<Pid>& termed,
                              Surroundings& surroundings, BenchMarks& benchMarks);

}  // namespace tarnwick
