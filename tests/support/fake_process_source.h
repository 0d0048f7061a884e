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
  std::optional<std::uint64_t> share;  // of the memory that it holds with others
};

struct FakeProcessSource : ProcessSource {
  std::map<Pid, FakeProcess> processes;
  std::map<Pid, StrangerFacts> strangers;
  std::map<Pid, std::uint64_t> strangersMemory;
  std::map<std::uint32_t, std::string> userNames;
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
  std::vector<Pid> candidates() override {
    std::set<Pid> pids;
    for (const auto& [pid, process] : processes) pids.insert(pid);
    for (const auto& [pid, facts] : strangers) pids.insert(pid);
    return {pids.begin(), pids.end()};
  }
  std::optional<StrangerFacts> stranger(Pid pid) override {
    ask("stranger", pid);
    return answerOf(strangers, pid);
  }
  std::optional<std::uint64_t> strangerMemory(Pid pid) override {
    ask("memory of stranger", pid);
    return answerOf(strangersMemory, pid);
  }
  std::optional<std::string> userName(std::uint32_t uid) override { return answerOf(userNames, uid); }
  std::optional<std::uint64_t> processorTime(Pid pid) override {
    if (clock) clock->turn(firstLook);
    return ask("time", pid).firstTime;
  }
  std::optional<std::uint64_t> shareOfMemory(Pid pid) override { return ask("share", pid).share; }
  std::unique_ptr<Process> process(Pid pid) override {
    if (!ask("facts", pid).facts) return nullptr;
    return std::make_unique<Answers>(*this, pid);
  }

 private:
  struct Answers : Process {
    Answers(FakeProcessSource& s, Pid p) : source(s), pid(p) {}
    const ProcessFacts& facts() const override { return *source.processes[pid].facts; }
    std::string path() override { return source.ask("path", pid).path; }
    std::optional<std::string> app(const std::string& path) override {
      return source.ask("app of " + path, pid).app;
    }
    std::vector<std::string> args() override { return source.ask("args", pid).args; }
    std::optional<ProcessUsage> usage() override {
      if (source.clock) source.clock->turn(source.secondLook);
      return source.ask("usage", pid).usage;
    }
    std::string cwd() override { return source.ask("cwd", pid).cwd; }
    std::vector<std::uint16_t> listenPorts() override { return source.ask("ports", pid).ports; }

    FakeProcessSource& source;
    Pid pid;
  };

  FakeProcess& ask(const std::string& question, Pid pid) {
    asked.push_back(question + " " + std::to_string(pid));
    return processes[pid];
  }
};

}  // namespace tarnwick
