#include "app/run.h"

#include "app/bench_mode.h"
#include "app/demo.h"
#include "app/demo_surroundings.h"
#include "app/explain.h"
#include "app/help.h"
#include "app/live_check.h"
#include "app/output.h"
#include "app/self_test.h"
#include "diagnosis/findings.h"
#include "diagnosis/report.h"
#include "records/checked.h"
#include "sampling/tools/posix/self.h"

namespace tarnwick {
namespace {

constexpr double checkSeconds = 1.0;  // between the two looks of a check

// What a mode shows.
struct Diagnosis {
  Snapshot snapshot;
  std::vector<Finding> found;
};

// Of the demo; absent when there is no scenario of that name.
std::optional<Diagnosis> diagnoseDemo(const std::optional<std::string>& scenario, const Self& self) {
  LiveCheck live(self, false);
  auto demo = demoSnapshot(SystemClock().now(), scenario, self);
  if (!demo) return std::nullopt;
  DemoSurroundings surroundings(*demo, live.surroundings());
  std::vector<Finding> found = findings(demo->snapshot, {}, surroundings, live.benchMarks());
  return Diagnosis{std::move(demo->snapshot), std::move(found)};
}

Diagnosis diagnoseLive(const CommandLine& commandLine, const Self& self) {
  const WaitingLine waiting("Checking your Mac…");
  LiveCheck live(self, commandLine.prTitles);
  Snapshot snapshot = live.scan(checkSeconds);
  std::vector<Finding> found = live.findings(snapshot, {});
  return {std::move(snapshot), std::move(found)};
}

int complainUnknownScenario(const CommandLine& commandLine) {
  printText(unknownScenario(*commandLine.scenario));
  return 1;
}

int runDemo(const CommandLine& commandLine, const Self& self) {
  const auto diagnosis = diagnoseDemo(commandLine.scenario, self);
  if (!diagnosis) return complainUnknownScenario(commandLine);
  return printText(text(diagnosis->snapshot, diagnosis->found, {}));
}

int runPrint(const CommandLine& commandLine, const Self& self) {
  const auto diagnosis = commandLine.scenario ? diagnoseDemo(commandLine.scenario, self)
                                              : std::optional(diagnoseLive(commandLine, self));
  if (!diagnosis) return complainUnknownScenario(commandLine);
  Guesses guesses;
  if (commandLine.askModel) {
    const std::unique_ptr<LanguageModel> model = systemLanguageModel();
    guesses = askAboutEvidence(diagnosis->found,
                               [&](const std::string& evidence) { return explain(evidence, model.get()); });
  }
  return printText(text(diagnosis->snapshot, diagnosis->found, guesses));
}

int runExplain(const CommandLine& commandLine) {
  return printText(explain(commandLine.evidence, systemLanguageModel().get()).value_or(""));
}

int runBenchmark(const Self& self) {
  LiveCheck live(self, false);
  int status = 0;
  runBench({.scan = [&](double interval) { return live.scan(interval); },
            .findings = [&](const Snapshot& snapshot) { return live.findings(snapshot, {}); }},
           live.benchMarks(), *ownCost(), [&](std::string_view line) { status |= printText(line); });
  return status;
}

int runSelfTest(const Self& self) {
  LiveCheck live(self, false);
  const auto mismatch = firstMismatch(expectedDiagnoses(), SystemClock().now(), live.surroundings());
  if (mismatch) fault(*mismatch);
  return printText("selftest ok\n");
}

}  // namespace

int run(const CommandLine& commandLine) {
  const Self self = readSelf();
  switch (commandLine.mode) {
    case Mode::selfTest:
      return runSelfTest(self);
    case Mode::explain:
      return runExplain(commandLine);
    case Mode::demo:
      return runDemo(commandLine, self);
    case Mode::bench:
      return runBenchmark(self);
    case Mode::print:
      return runPrint(commandLine, self);
    case Mode::help:
      return printText(helpText());
    case Mode::version:
      return printText(versionText());
    case Mode::snapshot:
      return complain("--snapshot is not part of this version yet.");
    case Mode::application:
      break;
  }
  return complain("the desktop application is not part of this version yet; try --print or --help.");
}

}  // namespace tarnwick
