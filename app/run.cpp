#include "app/run.h"

#include "app/demo.h"
#include "app/demo_surroundings.h"
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

constexpr double printInterval = 1.0;  // seconds between the two looks of a check

// The report of a demo scenario; an unknown name is said and gives status 1.
int printDemo(const CommandLine& commandLine, const Self& self) {
  LiveCheck live(self, false);
  const auto demo = demoSnapshot(SystemClock().now(), commandLine.scenario, self);
  if (!demo) {
    printText(unknownScenario(*commandLine.scenario));
    return 1;
  }
  DemoSurroundings surroundings(*demo, live.surroundings());
  const auto found = findings(demo->snapshot, {}, surroundings, live.benchMarks());
  return printText(text(demo->snapshot, found, {}));
}

int printLive(const CommandLine& commandLine, const Self& self) {
  LiveCheck live(self, commandLine.prTitles);
  const Snapshot snapshot = live.scan(printInterval);
  return printText(text(snapshot, live.findings(snapshot, {}), {}));
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
    case Mode::demo:
      return printDemo(commandLine, self);
    case Mode::print:
      return commandLine.scenario ? printDemo(commandLine, self) : printLive(commandLine, self);
    case Mode::help:
      return printText(helpText());
    case Mode::version:
      return printText(versionText());
    case Mode::explain:
      return complain("--explain is not part of this version yet.");
    case Mode::bench:
      return complain("--bench is not part of this version yet.");
    case Mode::snapshot:
      return complain("--snapshot is not part of this version yet.");
    case Mode::application:
      break;
  }
  return complain("the desktop application is not part of this version yet; try --print or --help.");
}

}  // namespace tarnwick
