// Tools as a check runs them: none beyond the check's own time, and whoever did not end in time is written
// down by its name. One thread, that of the check.
#pragma once

#include "sampling/tools/tool_runner.h"
#include "system/check_limits.h"

namespace tarnwick {

class LimitedToolRunner final : public ToolRunner {
 public:
  // Both must outlive it.
  LimitedToolRunner(ToolRunner& tools, CheckLimits& limits) : tools_(tools), limits_(limits) {}

  using ToolRunner::start;

  // A tool for which no time is left is not started; its result is late.
  std::unique_ptr<RunningTool> start(const std::string& path, const std::vector<std::string>& args,
                                     const ToolOptions& options) override;

 private:
  ToolRunner& tools_;
  CheckLimits& limits_;
};

}  // namespace tarnwick
