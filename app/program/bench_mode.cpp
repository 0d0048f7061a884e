#include "app/program/bench_mode.h"

#include <algorithm>
#include <map>
#include <string>

#include "records/formatted.h"

namespace tarnwick {
namespace {

constexpr int checks = 5;
constexpr double benchInterval = 0.5;

double megabytes(std::uint64_t bytes) { return static_cast<double>(bytes) / (1024 * 1024); }

// The upper of the two middle values where their number is even; 0 without values.
double median(std::vector<double> values) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

// What the phases cost in each check.
class PhaseCosts {
 public:
  // Each mark but the first ends a phase that began at the mark before. The first check that has a phase
  // names the phases and their order.
  void add(const std::vector<BenchMark>& marks) {
    const bool namesPhases = order_.empty();
    for (std::size_t i = 1; i < marks.size(); ++i) {
      const auto& [phase, end] = marks[i];
      samples_[phase].push_back(end - marks[i - 1].second);
      if (namesPhases) order_.push_back(phase);
    }
  }

  const std::vector<std::string>& order() const { return order_; }
  double medianOf(const std::string& phase) const { return median(samples_.at(phase)); }

 private:
  std::vector<std::string> order_;
  std::map<std::string, std::vector<double>> samples_;
};

}  // namespace

void runBench(const BenchedCheck& check, BenchMarks& benchMarks, OwnCost& cost,
              const std::function<void(std::string_view)>& print) {
  const double childrenBefore = cost.childMilliseconds();
  print(formatted("footprint before any check: {:.1f} MB\n", megabytes(cost.footprint())));

  PhaseCosts phases;
  for (int done = 0; done < checks; ++done) {
    benchMarks.arm();
    check.findings(check.scan(benchInterval));
    const auto marks = benchMarks.take();
    if (done == 0) print(formatted("footprint after check 1:    {:.1f} MB\n", megabytes(cost.footprint())));
    if (marks) phases.add(*marks);
  }
  const double children = cost.childMilliseconds() - childrenBefore;

  print("median CPU ms per check, by phase:\n");
  double total = 0;
  for (const std::string& phase : phases.order()) {
    const double milliseconds = phases.medianOf(phase);
    print(formatted("{:<16}  {:7.1f}\n", phase, milliseconds));
    total += milliseconds;
  }
  print(formatted("footprint now:    {:7.1f} MB\n", megabytes(cost.footprint())));
  print(
      formatted("  total           {:7.1f}\n"
                "child processes:  {:7.1f} ms per check\n"
                "peak footprint:   {:7.1f} MB\n",
                total, children / checks, megabytes(cost.peakFootprint())));
}

}  // namespace tarnwick
