// The tool runner on the live machine.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "sampling/tools/posix/started_tools.h"
#include "sampling/tools/tool_runner.h"
#include "system/mutex.h"

namespace tarnwick {

class PosixToolRunner : public ToolRunner {
 public:
  // `beforeStart` is called each time before a tool is started, by the thread that starts it.
  explicit PosixToolRunner(std::function<void()> beforeStart = [] {})
      : beforeStart_(std::move(beforeStart)) {}

  using ToolRunner::start;
  std::unique_ptr<RunningTool> start(const std::string& path, const std::vector<std::string>& args,
                                     const ToolOptions& options) override;

  // Ends every tool that runs, with its children; none is started any more. Any thread.
  void endAll() { started_->endAll(); }

 private:
  std::unique_ptr<RunningTool> launch(const std::string& path, const std::vector<std::string>& args,
                                      const ToolOptions& options) TARNWICK_REQUIRES(launching_);

  // Held from the making of a pipe until its tool runs: a tool started by another thread in between would
  // inherit the pipe where it cannot be made close-on-exec in one step.
  const std::function<void()> beforeStart_;
  Mutex launching_;
  const std::shared_ptr<StartedTools> started_ = std::make_shared<StartedTools>();  // tools may outlive us
};

}  // namespace tarnwick
