// Runs outside command-line tools and collects what they print. Starting and collecting are two calls, so
// that several tools can run side by side. Nothing here reports an error: a tool that cannot be started is
// absent, one that fails and prints nothing gives the empty text, and callers take that as no answer. Any
// thread; each call blocks only its own.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "records/limits.h"

namespace tarnwick {

// So long may a tool run before it is ended together with its children, in seconds.
inline constexpr double toolSeconds = 10;

// So much may a tool print before it is ended, in bytes.
inline constexpr std::size_t toolOutputBytes = mostToolOutput;

// What one call changes from the usual: the environment and the limits.
struct ToolOptions {
  // Variables of our own environment whose name starts with one of these do not reach the tool.
  std::vector<std::string> droppedVariables;
  // Name and value; a variable of the same name in our own environment is replaced.
  std::vector<std::pair<std::string, std::string>> addedVariables;
  double seconds = toolSeconds;
  std::size_t outputBytes = toolOutputBytes;
  bool emptyInput = false;  // standard input is empty instead of ours
};

struct ToolResult {
  std::string output;   // standard output as valid UTF-8; empty when the tool had to be ended
  int exitStatus = -1;  // 0..255 as the tool ended; -1 when a signal or a limit ended it
  bool late = false;    // it did not end in time; what it would have said is not known
};

// A tool that was started. Letting go of it before the result was taken ends the tool and its children.
class RunningTool {
 public:
  virtual ~RunningTool() = default;

  // Waits for the tool to end, or for a limit of its options. Asked once.
  virtual ToolResult result() = 0;
};

class ToolRunner {
 public:
  virtual ~ToolRunner() = default;

  // Launches the program at `path` without waiting: standard input inherited unless the options say
  // otherwise, standard output captured, standard error discarded. Null when it cannot be launched.
  virtual std::unique_ptr<RunningTool> start(const std::string& path, const std::vector<std::string>& args,
                                             const ToolOptions& options) = 0;
  std::unique_ptr<RunningTool> start(const std::string& path, const std::vector<std::string>& args) {
    return start(path, args, ToolOptions{});
  }

  // What the tool printed, whatever its exit status; empty for null, at once.
  static std::string finish(std::unique_ptr<RunningTool> tool) {
    return tool == nullptr ? std::string() : tool->result().output;
  }
};

}  // namespace tarnwick
