// Everything that remedies act on, in one object that writes down what it is asked and answers as told.
#pragma once

#include "app/remedies/fix_execution.h"
#include "tests/support/recording_tool_runner.h"

namespace tarnwick {

struct FakeFixTargets : SystemTargets, Browsers, SocketTransport, ToolRunner {
  std::vector<std::string> asked;
  std::vector<SignalOutcome> signalOutcomes;  // one for each signal, in order
  bool works = true;                          // settings and browsers
  int engineStatus = 204;                     // 0: the engine gives no reply
  std::optional<int> toolStatus = 0;          // absent: the tool cannot be started

  FixTargets targets() { return {*this, docker_, *this, *this, places_}; }

  SignalOutcome signal(const Signal& fix) override {
    asked.push_back("signal " + std::to_string(fix.pid) + " " + std::to_string(fix.number) + " " +
                    std::to_string(static_cast<long>(seconds(fix.started))));
    if (signalOutcomes.empty()) return {SignalOutcome::Kind::sent};
    SignalOutcome outcome = signalOutcomes.front();
    signalOutcomes.erase(signalOutcomes.begin());
    return outcome;
  }
  void quitApp(const std::string& app) override { asked.push_back("quit " + app); }
  bool hasDesktop() override { return works; }
  bool openSettings(const std::string& pane) override { return note("settings " + pane); }

  Access access(const std::string& /*app*/) override { return Access::unknown; }
  std::optional<Tabs> readTabs(const std::string& /*app*/) override { return std::nullopt; }
  bool askAccess(const std::string& app) override { return note("automation " + app); }
  bool closeDuplicates(const std::string& app) override { return note("duplicates " + app); }
  bool openPage(const std::string& url, const std::string& app) override {
    return note("tab " + app + " " + url);
  }

  bool reachable(const std::string& path) override { return path == "/engine.sock"; }
  std::optional<std::string> exchange(const std::string& /*path*/, std::string_view request,
                                      const ExchangeLimits& limits) override {
    asked.push_back(std::string(request.substr(0, request.find(" HTTP/1.0"))) + " within " +
                    std::to_string(static_cast<int>(limits.silence)) + " s");
    if (engineStatus == 0) return std::nullopt;
    return "HTTP/1.0 " + std::to_string(engineStatus) + " Words\r\n\r\n{\"message\": \"words\"}";
  }

  using ToolRunner::start;
  std::unique_ptr<RunningTool> start(const std::string& /*path*/, const std::vector<std::string>& args,
                                     const ToolOptions& options) override {
    std::string words = "simctl";
    for (const std::string& arg : args) words += " " + arg;
    asked.push_back(words + " within " + std::to_string(static_cast<int>(options.seconds)) + " s");
    return toolStatus ? std::make_unique<PreparedTool>(ToolResult{"", *toolStatus}) : nullptr;
  }

 private:
  bool note(const std::string& what) {
    asked.push_back(what);
    return works;
  }

  Docker docker_{*this, {"/engine.sock"}};
  ToolPlaces places_{ToolCandidates{.simctl = {"/bin/sh"}}};
};

}  // namespace tarnwick
