// Everything that a check of this machine needs, made once per run: the sources, the caches that outlive one
// check, and the answers to what the rules ask. One thread at a time.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "app/remedies/fix_execution.h"
#include "context/browsers.h"
#include "context/claude_reader.h"
#include "context/git_reader.h"
#include "context/live_surroundings.h"
#include "records/bench_marks.h"
#include "records/finding.h"
#include "records/snapshot.h"
#include "sampling/engine/docker.h"
#include "sampling/live_machine.h"
#include "sampling/process_table.h"
#include "sampling/scan.h"
#include "sampling/tools/posix/posix_tool_runner.h"
#include "sampling/tools/tool_places.h"
#include "system/clock.h"
#include "system/unix_socket.h"

namespace tarnwick {

class LiveCheck {
 public:
  // Between the two looks of a check that is shown to somebody, in seconds.
  static constexpr double checkSeconds = 1.0;

  // `prTitles`: may pull-request titles be looked up over the network? Asked whenever one is wanted.
  LiveCheck(const Self& self, std::function<bool()> prTitles);

  // Samples the machine; blocks for about `interval` seconds.
  Snapshot scan(double interval);

  // Forgets what the engine and the browsers answered, so that the next scan asks them again.
  void resetCaches() { scan_.resetCaches(); }

  // Carries out a remedy; absent when it was done, else what to tell the user. See fix_execution.h.
  std::optional<std::string> apply(const Fix& fix) { return tarnwick::apply(fix, *targets_); }

  // What the rules find in a snapshot of this machine.
  std::vector<Finding> findings(const Snapshot& snapshot, const std::set<Pid>& termed);

  Surroundings& surroundings() { return surroundings_; }
  BenchMarks& benchMarks() { return marks_; }
  Clock& clock() { return clock_; }
  ToolRunner& tools() { return tools_; }

 private:
  SystemClock clock_;
  BenchMarks marks_;
  PosixToolRunner tools_;
  ToolPlaces places_;
  UnixSocketTransport transport_;
  Docker docker_;
  std::unique_ptr<Browsers> browsers_;
  GitReader git_;
  ClaudeReader claude_;
  LiveSurroundings surroundings_;
  std::unique_ptr<LiveMachine> machine_;
  std::unique_ptr<FixTargets> targets_;
  ProcessTable processes_;
  Scan scan_;
};

}  // namespace tarnwick
