// What diagnosis costs on machines of 100 to 100,000 processes: each rule, the whole pipeline, the report.
// "per process" is the figure to watch: it must not grow with the machine.
#include <benchmark/benchmark.h>

#include "bench/generated_machine.h"
#include "diagnosis/detect.h"
#include "diagnosis/findings.h"
#include "diagnosis/report.h"

namespace tarnwick {
namespace {

using Rule = std::vector<Finding> (*)(const Snapshot&, Surroundings&);

void measure(benchmark::State& state, Rule rule) {
  NeutralSurroundings nowhere({1, 501, "/Users/x"});
  const Snapshot machine = generatedMachine(static_cast<int>(state.range(0)), nowhere.self());
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(rule(machine, nowhere));
  state.counters["per process"] =
      benchmark::Counter(static_cast<double>(state.range(0)),
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

std::vector<Finding> pipeline(const Snapshot& machine, Surroundings& nowhere) {
  BenchMarks unarmed([] { return 0.0; });
  return findings(machine, {}, nowhere, unarmed);
}

std::vector<Finding> pipelineAndReport(const Snapshot& machine, Surroundings& nowhere) {
  std::vector<Finding> found = pipeline(machine, nowhere);
  benchmark::DoNotOptimize(text(machine, found, {}));
  return found;
}

void sizes(benchmark::internal::Benchmark* benchmark) {
  for (const int processes : {100, 1'000, 10'000, 100'000}) benchmark->Arg(processes);
  benchmark->Unit(benchmark::kMicrosecond);
}

BENCHMARK_CAPTURE(measure, browsers, [](const Snapshot& s, Surroundings&) {
  return browsers(s);
})->Apply(sizes);
BENCHMARK_CAPTURE(measure, services, [](const Snapshot& s, Surroundings& a) {
  return busyServices(s, a.self());
})->Apply(sizes);
BENCHMARK_CAPTURE(measure, login_items, [](const Snapshot& s, Surroundings& a) {
  return loginApps(s, a.self());
})->Apply(sizes);
BENCHMARK_CAPTURE(measure, cpu, [](const Snapshot& s, Surroundings& a) {
  return cpuHogs(s, a);
})->Apply(sizes);
BENCHMARK_CAPTURE(measure, docker_card, [](const Snapshot& s, Surroundings&) {
  return docker(s);
})->Apply(sizes);
BENCHMARK_CAPTURE(measure, simulators, [](const Snapshot& s, Surroundings& a) {
  return simulators(s, a);
})->Apply(sizes);
BENCHMARK_CAPTURE(measure, stacks, [](const Snapshot& s, Surroundings& a) {
  return stacks(s, {}, a);
})->Apply(sizes);
BENCHMARK_CAPTURE(measure, test_browsers, [](const Snapshot& s, Surroundings& a) {
  return testBrowsers(s, {}, a.self());
})->Apply(sizes);
BENCHMARK_CAPTURE(measure, caffeinate, [](const Snapshot& s, Surroundings& a) {
  return caffeinates(s, {}, a);
})->Apply(sizes);
BENCHMARK_CAPTURE(measure, all_rules, pipeline)->Apply(sizes);
BENCHMARK_CAPTURE(measure, rules_and_report, pipelineAndReport)->Apply(sizes);

}  // namespace
}  // namespace tarnwick
