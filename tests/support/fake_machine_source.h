// A machine whose every answer is a field. As made, it answers everything and nothing neutrally. And a
// session whose running applications are a field.
#pragma once

#include <deque>

#include "sampling/machine_source.h"
#include "sampling/workspace.h"

namespace tarnwick {

struct FakeMachineSource : MachineSource {
  std::deque<CpuTicks> ticks = {{100, 1000}, {130, 1100}};  // one per question; zeros when used up
  ThermalState thermalAnswer = ThermalState::serious;
  std::optional<std::int32_t> pressureAnswer = 4;
  std::uint64_t ramAnswer = 16'000'000'000;
  int coresAnswer = 8;
  std::optional<std::int64_t> bootAnswer = 1'699'990'000;
  DiskSpace diskAnswer = {50'000'000'000, 500'000'000'000};
  std::optional<std::int64_t> importantAnswer = 70'000'000'000;
  std::uint64_t swapAnswer = 3'000'000'000;
  std::uint64_t inUseAnswer = 0;
  int importantAsked = 0;
  std::deque<std::vector<ContainerGroup>> groups;  // one list per question; empty when used up

  CpuTicks cpuTicks() override { return next(ticks); }
  ThermalState thermal() override { return thermalAnswer; }
  MemoryState memory() override { return {ramAnswer, swapAnswer, pressureAnswer, inUseAnswer}; }
  int cores() override { return coresAnswer; }
  std::optional<std::int64_t> bootTime() override { return bootAnswer; }
  DiskSpace disk() override { return diskAnswer; }
  std::vector<ContainerGroup> containerGroups() override { return next(groups); }
  std::optional<std::int64_t> importantCapacity() override {
    ++importantAsked;
    return importantAnswer;
  }

 private:
  template <class Answer>
  static Answer next(std::deque<Answer>& answers) {
    const Answer answer = answers.empty() ? Answer() : answers.front();
    if (!answers.empty()) answers.pop_front();
    return answer;
  }
};

struct FakeWorkspace : Workspace {
  std::vector<RunningApp> apps;

  std::vector<RunningApp> runningApps() override { return apps; }
};

}  // namespace tarnwick
