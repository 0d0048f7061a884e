// Cost marks of one check, for the benchmark mode. Not armed, a mark costs one comparison.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tarnwick {

// (phase or rule name, the program's cumulative user + system processor time in milliseconds at its end).
using BenchMark = std::pair<std::string, double>;

// One per run; touched only by the thread that runs the check.
class BenchMarks {
 public:
  // `processorMilliseconds` answers the program's own cumulative processor time.
  explicit BenchMarks(std::function<double()> processorMilliseconds)
      : processorMilliseconds_(std::move(processorMilliseconds)) {}

  // Starts a new, empty list of marks.
  void arm() { benchMarks.emplace(); }

  // Stops recording and hands out what was recorded; absent when it was not armed.
  std::optional<std::vector<BenchMark>> take() { return std::exchange(benchMarks, std::nullopt); }

  // Appends one mark when armed, else does nothing.
  void mark(const char* label) {
    if (benchMarks) benchMarks->emplace_back(label, processorMilliseconds_());
  }

 private:
  std::function<double()> processorMilliseconds_;
  std::optional<std::vector<BenchMark>> benchMarks;
};

}  // namespace tarnwick
