#include "app/run.h"

#include <algorithm>

#include "app/cli/help.h"
#include "app/cli/output.h"
#include "app/cli/terminal_text.h"
#include "app/demo/demo.h"
#include "app/demo/demo_surroundings.h"
#include "app/demo/self_test.h"
#include "app/explain/explain.h"
#include "app/live_check.h"
#include "app/live_parts.h"
#include "app/live_services.h"
#include "app/panel/panel_jobs.h"
#include "app/program/bench_mode.h"
#include "diagnosis/findings.h"
#include "diagnosis/report.h"
#include "records/checked.h"
#include "system/self.h"

namespace tarnwick {
namespace {

// Demos and measurements never look anything up over the network.
bool never() { return false; }

// May pull-request titles be looked up? The user says so for this run or for good.
std::function<bool()> prTitles(const CommandLine& commandLine, const Self& self) {
  return [asked = commandLine.prTitles, self] { return asked || prTitlesChosen(self); };
}

// Absent when there is no scenario of that name.
std::optional<Check> checkDemo(const std::optional<std::string>& scenario, const Self& self) {
  LiveCheck live(self, never);
  auto demo = demoSnapshot(SystemClock().now(), scenario, self);
  if (!demo) return std::nullopt;
  DemoSurroundings surroundings(*demo, live.surroundings());
  std::vector<Finding> found = findings(demo->snapshot, {}, surroundings, live.benchMarks());
  return Check{std::move(demo->snapshot), std::move(found)};
}

Check checkLive(const CommandLine& commandLine, const Self& self) {
  const WaitingLine waiting("Checking your Mac…");
  LiveCheck live(self, prTitles(commandLine, self));
  return LiveServices(live, {}).check({});
}

// The words come from outside: whatever they hold, they make one line and do nothing to a terminal.
void complainUnknownWords(std::vector<std::string> words) {
  for (std::string& word : words) {
    std::ranges::replace(word, '\n', ' ');
    word = harmlessForTerminal(word);
  }
  complain(unknownWordsText(words));
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
  return printText(explain(*commandLine.evidence, systemLanguageModel().get()).value_or(""));
}

int runSnapshot(const CommandLine& commandLine, const Self& self) {
  const auto check =
      commandLine.live ? std::optional(checkLive(commandLine, self)) : checkDemo(commandLine.scenario, self);
  if (!check) return complainUnknownScenario(commandLine);
  panel::writePanelImage({.snapshot = check->snapshot,
                          .found = check->found,
                          .dark = commandLine.dark,
                          .open = commandLine.open,
                          .path = *commandLine.imagePath});
  return 0;  // also when the picture could not be drawn or written
}

int runApplication(const CommandLine& commandLine, const Self& self) {
  LiveCheck live(self, prTitles(commandLine, self));
  const std::unique_ptr<panel::PanelSettings> settings = panel::userPanelSettings(self);
  std::optional<LiveServices> services;
  return panel::showApplication({.makeModel =
                                     [&](Executor& executor, panel::PanelApplication::CopyText copyText) {
                                       services.emplace(live, std::move(copyText));
                                       return std::make_unique<Model>(executor, *services);
                                     },
                                 .now = [&] { return live.clock().now(); },
                                 .settings = settings.get(),
                                 .exercise = commandLine.exercise});
}

int runBenchmark(const Self& self) {
  LiveCheck live(self, never);
  int status = 0;
  runBench({.scan = [&](double interval) { return live.scan(interval); },
            .findings = [&](const Snapshot& snapshot) { return live.findings(snapshot, {}); }},
           live.benchMarks(), *ownCost(), [&](std::string_view line) { status |= printText(line); });
  return status;
}

int runSelfTest(const Self& self) {
  LiveCheck live(self, never);
  const auto mismatch = firstMismatch(expectedDiagnoses(), SystemClock().now(), live.surroundings());
  if (mismatch) fault(*mismatch);
  return printText("selftest ok\n");
}

}  // namespace

int run(const CommandLine& commandLine) {
  if (!commandLine.unknown.empty()) complainUnknownWords(commandLine.unknown);
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
      return runSnapshot(commandLine, self);
    case Mode::application:
      return runApplication(commandLine, self);
  }
  return 0;
}

}  // namespace tarnwick
