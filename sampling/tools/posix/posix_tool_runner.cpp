#include "sampling/tools/posix/posix_tool_runner.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <optional>
#include <string_view>
#include <thread>
#include <utility>

#include "records/utf8.h"
#include "system/environment.h"
#include "system/posix/descriptor.h"
#include "system/posix/spawned_process.h"

namespace tarnwick {
namespace {

using Steady = std::chrono::steady_clock;

// How often a tool is asked whether it has ended: soon at first, then ever more rarely. The end of its
// output, the usual sign, wakes the caller at once.
constexpr std::chrono::microseconds firstPause{200};
constexpr std::chrono::microseconds longestPause{25'000};

struct Pipe {
  Descriptor readEnd;
  Descriptor writeEnd;
};

// Both ends close-on-exec; reading never blocks, writing does.
std::optional<Pipe> makePipe() {
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) return std::nullopt;
  Pipe pipe{Descriptor(ends[0]), Descriptor(ends[1])};
  for (const int end : ends) {
    if (::fcntl(end, F_SETFD, FD_CLOEXEC) != 0) return std::nullopt;
  }
  if (::fcntl(ends[0], F_SETFL, O_NONBLOCK) != 0) return std::nullopt;
  return pipe;
}

// A started tool, the leader of its own process group.
class PosixTool : public RunningTool {
 public:
  PosixTool(std::shared_ptr<StartedTools> started, pid_t pid, Descriptor output, const ToolOptions& options)
      : started_(std::move(started)),
        pid_(pid),
        output_(std::move(output)),
        seconds_(options.seconds),
        outputBytes_(options.outputBytes),
        deadline_(Steady::now() + inSteadyTime(options.seconds)) {}
  ~PosixTool() override { end(); }
  PosixTool(const PosixTool&) = delete;
  PosixTool& operator=(const PosixTool&) = delete;

  ToolResult result() override {
    // A tool that waits with a full pipe while others were collected gets a moment of its own.
    deadline_ = std::max(deadline_, Steady::now() + inSteadyTime(seconds_ / 10));
    if (!collect()) {
      end();
      return {.late = late_};
    }
    return {repairUtf8(text_), exitStatus_};
  }

 private:
  static Steady::duration inSteadyTime(double seconds) {
    return std::chrono::duration_cast<Steady::duration>(std::chrono::duration<double>(seconds));
  }

  // Reads until the tool has ended; false when a limit was reached before. The end of the tool decides, not
  // the end of its output: a process that it left in the background may hold the pipe for ever.
  bool collect() {
    std::chrono::microseconds pause = firstPause;
    while (true) {
      const bool ended = hasEnded();
      if (!drain()) return false;
      if (ended) return true;
      late_ = Steady::now() >= deadline_;
      if (late_) return false;
      waitForOutput(pause);
      pause = std::min(pause * 2, longestPause);
    }
  }

  // Takes what is in the pipe now; false when there was too much in all.
  bool drain() {
    std::array<char, 65536> block{};
    while (output_.isOpen()) {
      const ssize_t got = output_.read(block);
      if (got < 0 && errno == EAGAIN) break;
      if (got <= 0) {
        output_.close();
        break;
      }
      if (static_cast<std::size_t>(got) > outputBytes_ - text_.size()) return false;
      text_.append(block.data(), static_cast<std::size_t>(got));
    }
    return true;
  }

  void waitForOutput(std::chrono::microseconds pause) const {
    if (!output_.isOpen()) {
      std::this_thread::sleep_for(pause);
      return;
    }
    pollfd wanted{output_.number(), POLLIN, 0};
    const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(pause).count();
    ::poll(&wanted, 1, static_cast<int>(milliseconds));
  }

  // Asks without waiting, and lays the ended tool to rest.
  bool hasEnded() {
    if (pid_ <= 0) return true;
    int status = 0;
    if (!started_->hasEnded(pid_, status)) return false;
    pid_ = 0;
    if (status >= 0 && WIFEXITED(status)) exitStatus_ = WEXITSTATUS(status);
    return true;
  }

  void end() {
    output_.close();
    if (pid_ > 0) started_->end(std::exchange(pid_, 0));
  }

  const std::shared_ptr<StartedTools> started_;
  pid_t pid_;  // 0 once it has been waited for
  Descriptor output_;
  double seconds_;
  std::size_t outputBytes_;
  Steady::time_point deadline_;
  std::string text_;
  int exitStatus_ = -1;
  bool late_ = false;  // the deadline passed before it ended
};

bool isDropped(std::string_view variable, const ToolOptions& options) {
  const std::string_view name = variable.substr(0, variable.find('='));
  for (const std::string& prefix : options.droppedVariables) {
    if (name.starts_with(prefix)) return true;
  }
  return std::any_of(options.addedVariables.begin(), options.addedVariables.end(),
                     [name](const auto& added) { return added.first == name; });
}

std::vector<std::string> environmentFor(const ToolOptions& options) {
  std::vector<std::string> variables = environmentVariables();
  std::erase_if(variables, [&](const std::string& variable) { return isDropped(variable, options); });
  for (const auto& [name, value] : options.addedVariables) {
    variables.push_back(name);
    variables.back().append("=").append(value);
  }
  return variables;
}

}  // namespace

std::unique_ptr<RunningTool> PosixToolRunner::start(const std::string& path,
                                                    const std::vector<std::string>& args,
                                                    const ToolOptions& options) {
  beforeStart_();
  const MutexLock lock(launching_);
  return launch(path, args, options);
}

std::unique_ptr<RunningTool> PosixToolRunner::launch(const std::string& path,
                                                     const std::vector<std::string>& args,
                                                     const ToolOptions& options) {
  std::optional<Pipe> pipe = makePipe();
  if (!pipe || !started_->beginStart()) return nullptr;
  const pid_t pid = spawnProcess({.path = path,
                                  .words = args,
                                  .variables = environmentFor(options),
                                  .input = options.emptyInput ? noStream : ownStream,
                                  .output = pipe->writeEnd.number()});
  started_->endStart(pid);
  if (pid <= 0) return nullptr;
  return std::make_unique<PosixTool>(started_, pid, std::move(pipe->readEnd), options);
}

}  // namespace tarnwick
