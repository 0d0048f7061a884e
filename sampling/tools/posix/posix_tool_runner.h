// The tool runner on the live machine.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "sampling/tools/tool_runner.h"

namespace tarnwick {

class PosixToolRunner : public ToolRunner {
 public:
  using ToolRunner::start;
  std::unique_ptr<RunningTool> start(const std::string& path, const std::vector<std::string>& args,
                                     const ToolOptions& options) override;

 private:
  // Held from the making of a pipe until its tool runs: a tool started by another thread in between would
  // inherit the pipe where it cannot be made close-on-exec in one step.
  std::mutex launching_;
};

}  // namespace tarnwick
