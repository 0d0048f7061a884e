// A process source of plain values that writes down what it is asked. A process without facts is listed but
// cannot be read, as one that exits between the listing and the question.
#pragma once

#include "sampling/process_source.h"
#include "tests/support/fake_clock.h"
#include "tests/support/testing.h"

namespace tarnwick {

struct FakeProcess {
  std::optional<ProcessFacts> facts;
  std::optional<ProcessUsage> usage;
  std::optional<std::uint64_t> firstTime;  // what processorTime() answers
  std::string path;
  std::optional<std::string> app;
  std::vector<std::string> args;
  std::string cwd;
  std::vector<std::uint16_t> ports;
};

struct FakeProcessSource : ProcessSource {
  std::map<Pid, FakeProcess> processes;
  std::uint64_t wall = 0;
  FakeClock* clock = nullptr;  // turned by so many seconds for each process of the first and the second pass
  double firstLook = 0;
  double secondLook = 0;
  std::vector<std::string> asked;  // such as "path 7", in order; emptied by the test

  void beginPass() override { asked.emplace_back("begin"); }
  std::uint64_t wallTime() override { return clock ? static_cast<std::uint64_t>(clock->up * 1000) : wall; }
  std::vector<Pid> myPids() override {
    std::vector<Pid> pids;
    for (const auto& [pid, process] : processes) pids.push_back(pid);
    return pids;
  }
  std::optional<std::uint64_t> processorTime(Pid pid) override {
    if (clock) clock->turn(firstLook);
    return ask("time", pid).firstTime;
  }
  std::optional<ProcessFacts> facts(Pid pid) override { return ask("facts", pid).facts; }
  std::string path(Pid pid) override { return ask("path", pid).path; }
  std::optional<std::string> app(Pid pid, const std::string& path) override {
    return ask("app of " + path, pid).app;
  }
  std::vector<std::string> args(Pid pid) override { return ask("args", pid).args; }
  std::optional<ProcessUsage> usage(Pid pid) override {
    if (clock) clock->turn(secondLook);
    return ask("usage", pid).usage;
  }
  std::string cwd(Pid pid) override { return ask("cwd", pid).cwd; }
  std::vector<std::uint16_t> listenPorts(Pid pid) override { return ask("ports", pid).ports; }

 private:
  FakeProcess& ask(const std::string& question, Pid pid) {
    asked.push_back(question + " " + std::to_string(pid));
    return processes[pid];
  }
};

}  // namespace tarnwick
