// Real repositories in a temporary folder, made without the machine's configuration by its git, or by the one
// that TARNWICK_TEST_GIT names.
#pragma once

#include "sampling/tools/posix/posix_tool_runner.h"
#include "sampling/tools/tool_places.h"
#include "tests/support/testing.h"

namespace tarnwick {

struct GitWorld {
  TempFolder folder;
  PosixToolRunner runner;
  ToolPlaces places{candidates(folder.path())};

  static ToolCandidates candidates(const std::string& home) {
    ToolCandidates tools = toolCandidates(home);
    if (const char* other = std::getenv("TARNWICK_TEST_GIT")) tools.git = {other};
    return tools;
  }

  // What git prints when it runs in `dir`.
  ToolResult run(const std::string& dir, std::vector<std::string> args) {
    args.insert(args.begin(), {"-C", dir});
    const ToolOptions options{.droppedVariables = {"GIT_"},
                              .addedVariables = {{"GIT_CONFIG_GLOBAL", "/dev/null"},
                                                 {"GIT_CONFIG_NOSYSTEM", "1"},
                                                 {"GIT_AUTHOR_NAME", "A"},
                                                 {"GIT_AUTHOR_EMAIL", "a@example.com"},
                                                 {"GIT_COMMITTER_NAME", "A"},
                                                 {"GIT_COMMITTER_EMAIL", "a@example.com"}}};
    auto tool = runner.start(places.gitBin().value_or(""), args, options);
    return tool == nullptr ? ToolResult{} : tool->result();
  }

  // The same, and it must succeed; without the line end.
  std::string git(const std::string& dir, const std::vector<std::string>& args) {
    const ToolResult result = run(dir, args);
    EXPECT_EQ(result.exitStatus, 0) << args.front() << ": " << result.output;
    return result.output.substr(0, result.output.find_last_not_of('\n') + 1);
  }

  // A repository on branch "main" with one commit; gives its path.
  std::string repository(const std::string& name, const std::string& subject) {
    git(folder.path(), {"init", "-q", "-b", "main", name});
    git(folder.at(name), {"commit", "-q", "--allow-empty", "-m", subject});
    return folder.at(name);
  }
};

}  // namespace tarnwick
