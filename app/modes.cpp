#include "app/modes.h"

#include <string>

#include "app/cli/help.h"
#include "app/cli/json_report.h"
#include "app/cli/output.h"
#include "app/cli/terminal_text.h"
#include "app/cli/top_table.h"
#include "app/demo/demo.h"
#include "app/demo/demo_check.h"
#include "app/explain/explain.h"
#include "app/fix/fix_mode.h"
#include "app/fix/offers.h"
#include "app/program/bench_mode.h"
#include "app/watch/watch_mode.h"
#include "diagnosis/report.h"
#include "diagnosis/verdict.h"
#include "records/checked.h"
#include "system/port.h"

namespace tarnwick {
namespace {

// The demo as it reads here and now.
DemoReader reader(const Self& self) { return {self, SystemClock().now(), localMediumDate}; }

Guesses guessesAbout(const Check& check) {
  const std::unique_ptr<LanguageModel> model = systemLanguageModel();
  return askAboutEvidence(check.found,
                          [&](const std::string& evidence) { return explain(evidence, model.get()); });
}

int statusOfVerdict(const ProgramRun& run, const Check& check) {
  constexpr int slow = 3;
  return run.words.exitCode && !verdict(check.snapshot, check.found).ok ? slow : 0;
}

// So many of the biggest users does what is printed name.
std::size_t wantedRows(const CommandLine& words) {
  return words.top || words.json ? rowsOf(words).value_or(usualRows) : 0;
}

int printReport(const ProgramRun& run, const std::optional<Check>& check, bool askModel) {
  if (!check) return printUnknownScenario(run);
  const Guesses guesses = askModel ? guessesAbout(*check) : Guesses{};
  int status = 0;
  if (run.words.json) {
    status = run.printDocument(jsonReport(
        {check->snapshot, check->found, guesses, check->users, check->leftOut}, JsonLayout::indented));
  } else if (run.words.top) {
    status = run.print(topTable(check->users, check->snapshot, run.look ? run.look->columns : std::nullopt));
  } else if (run.look) {
    status =
        run.printLaidOut(laidOut(tinted(reportLines(check->snapshot, check->found, guesses)), *run.look));
  } else {
    status = run.print(text(check->snapshot, check->found, guesses));
  }
  return run.leave(status != 0 ? status : statusOfVerdict(run, *check));
}

int printLive(const ProgramRun& run) {
  const std::optional<Check> check = liveCheck(run);
  return check->seen ? printReport(run, check, run.words.askModel) : complainUnseen();
}

int runBenchmark(const ProgramRun& run) {
  Machine machine(run.outside(), PrTitles::never);
  int status = 0;
  runBench({.scan = [&](double interval) { return machine.scan(interval); },
            .findings = [&](const Snapshot& snapshot) { return machine.findings(snapshot, {}); }},
           machine.benchMarks(), *ownCost(), [&](std::string_view line) { status |= run.print(line); });
  return status;
}

int runSelfTest(const ProgramRun& run) {
  const auto mismatch = firstMismatch(run.expected, reader(run.self));
  if (mismatch) fault(*mismatch);
  return run.print("selftest ok\n");
}

}  // namespace

std::string leftOutText(const std::vector<std::string>& names) {
  std::string text = "left out, because it did not answer in time: ";
  for (const std::string& name : names) {
    if (&name != &names.front()) text += ", ";
    text += harmlessInLine(name);  // a folder may be called anything
  }
  return text + ".";
}

PrTitles titlesOf(const CommandLine& words) {
  return words.prTitles ? PrTitles::thisRun : PrTitles::whenChosen;
}

Check liveCheck(const ProgramRun& run) {
  std::optional<Check> check;
  {
    const WaitingLine waiting("Checking your Mac…");
    check = Machine(run.outside(), titlesOf(run.words), Checks::one, wantedRows(run.words)).check({});
  }
  if (check->seen && !check->leftOut.empty()) complain(leftOutText(check->leftOut));
  return std::move(*check);
}

std::optional<Check> demoCheck(const ProgramRun& run) {
  return checkDemo(run.words.scenario, reader(run.self), wantedRows(run.words));
}

int printUnknownScenario(const ProgramRun& run) {
  std::string sentence = unknownScenario(*run.words.scenario);
  if (run.words.json) {  // whoever reads documents takes no sentence for one
    sentence.pop_back();
    return complain(sentence);
  }
  run.print(sentence);
  return 1;
}

int complainUnseen() {
  return complain(
      "this machine cannot be seen: its processes or its memory cannot be read. On Linux they are in /proc.");
}

int runTextMode(const ProgramRun& run) {
  switch (run.words.mode) {
    case Mode::selfTest:
      return runSelfTest(run);
    case Mode::explain:
      return run.print(explain(*run.words.evidence, systemLanguageModel().get()).value_or(""));
    case Mode::demo:
      return printReport(run, demoCheck(run), false);
    case Mode::bench:
      return runBenchmark(run);
    case Mode::print:
    case Mode::top:
      return run.words.scenario ? printReport(run, demoCheck(run), run.words.askModel) : printLive(run);
    case Mode::help:
      return run.print(helpText());
    case Mode::version:
      return run.print(versionText());
    case Mode::fix:
      return runFix(run);
    case Mode::watch:
      return runWatch(run);
    case Mode::snapshot:
    case Mode::application:
      break;
  }
  return 0;
}

}  // namespace tarnwick
