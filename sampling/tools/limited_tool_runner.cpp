#include "sampling/tools/limited_tool_runner.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace tarnwick {
namespace {

class LimitedTool final : public RunningTool {
 public:
  // `tool` is null when there was no time to start it.
  LimitedTool(std::unique_ptr<RunningTool> tool, std::string name, CheckLimits& limits)
      : tool_(std::move(tool)), name_(std::move(name)), limits_(limits) {}

  ToolResult result() override {
    ToolResult result = tool_ == nullptr ? ToolResult{.late = true} : tool_->result();
    if (result.late) limits_.leaveOut(name_);
    return result;
  }

 private:
  std::unique_ptr<RunningTool> tool_;
  const std::string name_;
  CheckLimits& limits_;
};

}  // namespace

std::unique_ptr<RunningTool> LimitedToolRunner::start(const std::string& path,
                                                      const std::vector<std::string>& args,
                                                      const ToolOptions& options) {
  ToolOptions limited = options;
  limited.seconds = std::min(options.seconds, limits_.deadline().left());
  std::unique_ptr<RunningTool> tool;
  if (limited.seconds > 0) {
    tool = tools_.start(path, args, limited);
    if (tool == nullptr) return nullptr;
  }
  return std::make_unique<LimitedTool>(std::move(tool), path.substr(path.rfind('/') + 1), limits_);
}

}  // namespace tarnwick
