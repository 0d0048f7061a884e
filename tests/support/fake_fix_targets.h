// Targets of remedies that only write down what they are asked to do, and answer as told.
#pragma once

#include "app/remedies/fix_execution.h"
#include "tests/support/testing.h"

namespace tarnwick {

struct FakeFixTargets : FixTargets {
  std::vector<std::string> asked;
  std::vector<SignalOutcome> signalOutcomes;  // one for each signal, in order
  SimulatorOutcome simulator = SimulatorOutcome::done;
  bool works = true;

  SignalOutcome signal(const Signal& fix) override {
    asked.push_back("signal " + std::to_string(fix.pid) + " " + std::to_string(fix.number) + " " +
                    std::to_string(static_cast<long>(seconds(fix.started))));
    if (signalOutcomes.empty()) return {SignalOutcome::Kind::sent};
    SignalOutcome outcome = signalOutcomes.front();
    signalOutcomes.erase(signalOutcomes.begin());
    return outcome;
  }
  void quitApp(const std::string& app) override { asked.push_back("quit " + app); }
  bool dockerStop(const std::string& id) override { return note("docker " + id); }
  SimulatorOutcome simShutdown(const std::string& udid) override {
    asked.push_back("sim " + udid);
    return simulator;
  }
  bool openSettings(const std::string& pane) override { return note("settings " + pane); }
  bool askAutomation(const std::string& app) override { return note("automation " + app); }
  bool closeDuplicateTabs(const std::string& app) override { return note("duplicates " + app); }
  bool openTab(const std::string& app, const std::string& url) override {
    return note("tab " + app + " " + url);
  }

 private:
  bool note(const std::string& what) {
    asked.push_back(what);
    return works;
  }
};

}  // namespace tarnwick
