// The tool runner on the live machine.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "sampling/tools/tool_runner.h"
#include "system/mutex.h"

namespace tarnwick {

class PosixToolRunner : public ToolRunner {
 public:
  using ToolRunner::start;
  std::unique_ptr<RunningTool> start(const std::string& path, const std::vector<std::string>& args,
                                     const ToolOptions& options) override;

 private:
  std::unique_ptr<RunningTool> launch(const std::string& path, const std::vector<std::string>& args,
                                      const ToolOptions& options) TARNWICK_REQUIRES(launching_);

  // Held from the making of a pipe until its tool runs: a tool started by another thread in between would
  // inherit the pipe where it cannot be made close-on-exec in one step.
  Mutex launching_;
};

}  // namespace tarnwick
