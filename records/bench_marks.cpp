#include "records/bench_marks.h"

namespace tarnwick {

BenchMarks::BenchMarks(std::function<double()> processorMilliseconds)
    : processorMilliseconds_(std::move(processorMilliseconds)) {}

void BenchMarks::arm() { benchMarks.emplace(); }

std::optional<std::vector<BenchMark>> BenchMarks::take() { return std::exchange(benchMarks, std::nullopt); }

void BenchMarks::mark(const char* label) {
  if (benchMarks) benchMarks->emplace_back(label, processorMilliseconds_());
}

}  // namespace tarnwick
