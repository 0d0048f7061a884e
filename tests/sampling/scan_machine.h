// A scan over a machine of fakes.
#pragma once

#include "sampling/scan.h"
#include "tests/support/fake_browsers.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_machine_source.h"
#include "tests/support/fake_process_source.h"
#include "tests/support/fake_transport.h"
#include "tests/support/fake_workspace.h"
#include "tests/support/temp_folder.h"

namespace tarnwick {

struct ScanMachine {
  FakeClock clock;
  FakeProcessSource process;
  FakeMachineSource machine;
  FakeWorkspace workspace;
  double spent = 0;
  BenchMarks marks{[this] { return spent += 1; }};
  ProcessTable processes{process};
  TempFolder home;
  FakeTransport engine;
  Docker docker{engine, {"/engine.sock"}};
  bool dockerRuns = true;
  FakeBrowsers browsers;
  Scan driver{{processes, machine, workspace, clock, marks, docker, [this] { return dockerRuns; }, browsers},
              home.path()};
};

}  // namespace tarnwick
