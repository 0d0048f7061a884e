// "--bench": what one check costs this program, by phase, in processor time and memory.
#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "app/program/own_process.h"
#include "records/bench_marks.h"
#include "records/finding.h"
#include "records/snapshot.h"

namespace tarnwick {

// The check that is measured; both leave their marks in the `BenchMarks` handed in beside it.
struct BenchedCheck {
  std::function<Snapshot(double interval)> scan;
  std::function<std::vector<Finding>(const Snapshot&)> findings;
};

// Runs five checks on the calling thread and hands every text out as soon as it is known, each with its
// line break.
void runBench(const BenchedCheck& check, BenchMarks& benchMarks, OwnCost& cost,
              const std::function<void(std::string_view)>& print);

}  // namespace tarnwick
