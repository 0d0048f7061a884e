#include "app/run.h"

#include "app/bench_mode.h"
#include "app/demo.h"
#include "app/demo_surroundings.h"
#include "app/explain.h"
#include "app/help.h"
#include "app/live_check.h"
#include "app/live_services.h"
#include "app/output.h"
#include "app/self_test.h"
#include "diagnosis/findings.h"
#include "diagnosis/report.h"
#include "records/checked.h"
#include "sampling/tools/posix/self.h"

namespace tarnwick {
namespace {

// Absent when there is no scenario of that name.
std::optional<Check> checkDemo(const std::optional<std::string>& scenario, const Self& self) {
  LiveCheck live(self, false);
  auto demo = demoSnapshot(SystemClock().now(), scenario, self);
  if (!demo) return std::nullopt;
  DemoSurroundings surroundings(*demo, live.surroundings());
  std::vector<Finding> found = findings(demo->snapshot, {}, surroundings, live.benchMarks());
  return Check{std::move(demo->snapshot), std::move(found)};
}

Check checkLive(const CommandLine& commandLine, const Self& self) {
  const WaitingLine waiting("Checking your Mac…");
  LiveCheck live(self, commandLine.prTitles);
  return LiveServices(live, {}).check({});
}

int complainUnknownScenario(const CommandLine& commandLine) {
  printText(unknownScenario(*commandLine.scenario));
  return 1;
}

int runDemo(const CommandLine& commandLine, const Self& self) {
  const auto check = checkDemo(commandLine.scenario, self);
  if (!check) return complainUnknownScenario(commandLine);
  return printText(text(check->snapshot, check->found, {}));
}

int runPrint(const CommandLine& commandLine, const Self& self) {
  const auto check = commandLine.scenario ? checkDemo(commandLine.scenario, self)
                                          : std::optional(checkLive(commandLine, self));
  if (!check) return complainUnknownScenario(commandLine);
  Guesses guesses;
  if (commandLine.askModel) {
    const std::unique_ptr<LanguageModel> model = systemLanguageModel();
    guesses = askAboutEvidence(check->found,
                               [&](const std::string& evidence) { return explain(evidence, model.get()); });
  }
  return printText(text(check->snapshot, check->found, guesses));
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
