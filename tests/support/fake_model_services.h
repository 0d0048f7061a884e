// What a model asks for, written down, with prepared answers. Checks and children must not hold the main
// thread.
#pragma once

#include "app/model/model.h"
#include "records/checked.h"
#include "tests/support/testing.h"

namespace tarnwick {

struct FakeServices : ModelServices {
  explicit FakeServices(const Executor& executor) : executor_(executor) {}

  Check check(const std::set<Pid>& termed) override {
    if (executor_.isMainThread()) fault("a check on the main thread");
    calls.emplace_back("check");
    termedSeen.push_back(termed);
    return next;
  }
  void resetCaches() override { calls.emplace_back("reset"); }
  std::optional<std::string> apply(const Fix& fix) override {
    calls.push_back((executor_.isMainThread() ? "apply on main: " : "apply: ") + fix.command());
    return error;
  }
  std::optional<std::string> ownExecutable() override { return executable; }
  std::string explainByChild(const std::string& program, const std::string& evidence) override {
    if (executor_.isMainThread()) fault("the main thread waits for a child");
    calls.push_back(program + " explains " + evidence);
    return answer;
  }
  void freeMemory() override { calls.emplace_back("free memory"); }
  Timestamp now() override { return time; }

  Model::CopyText pasteboard() {
    return [this](const std::string& text) { copied = text; };
  }

  Check next;
  std::optional<std::string> error;
  std::optional<std::string> executable = "/bin/tarnwick";
  std::string answer;
  std::string copied;
  Timestamp time = timestamp(1'700'000'000);
  std::vector<std::string> calls;
  std::vector<std::set<Pid>> termedSeen;

 private:
  const Executor& executor_;
};

}  // namespace tarnwick
