// A tool runner that runs nothing: it records what was asked and gives prepared answers.
#pragma once

#include "sampling/tools/tool_runner.h"
#include "tests/support/testing.h"

namespace tarnwick {

struct PreparedTool : RunningTool {
  explicit PreparedTool(ToolResult result) : prepared(std::move(result)) {}
  ToolResult result() override { return prepared; }
  ToolResult prepared;
};

struct RecordingToolRunner : ToolRunner {
  // The words of every call, the program first.
  std::vector<std::vector<std::string>> calls;
  ToolOptions options;  // of the last one
  // What every tool answers from now on.
  ToolResult answer{"", 0};

  using ToolRunner::start;
  std::unique_ptr<RunningTool> start(const std::string& path, const std::vector<std::string>& args,
                                     const ToolOptions& given) override {
    options = given;
    calls.push_back({path});
    calls.back().insert(calls.back().end(), args.begin(), args.end());
    return std::make_unique<PreparedTool>(answer);
  }
};

}  // namespace tarnwick
