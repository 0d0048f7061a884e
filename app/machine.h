// The composition root: one run's caches and readers, wired to the world outside, and what the model asks of
// them. Made once per run. Checks, remedies and resets take turns, on whatever thread; two at once are a
// fault.
#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "app/model/model_services.h"
#include "app/outside.h"
#include "context/claude_reader.h"
#include "context/git_reader.h"
#include "context/live_surroundings.h"
#include "records/bench_marks.h"
#include "records/finding.h"
#include "records/snapshot.h"
#include "sampling/engine/docker.h"
#include "sampling/process_table.h"
#include "sampling/scan.h"
#include "sampling/tools/limited_tool_runner.h"
#include "sampling/tools/tool_places.h"
#include "system/one_at_a_time.h"

namespace tarnwick {

// May pull-request titles be looked up over the network?
enum class PrTitles {
  never,       // demos and measurements
  whenChosen,  // as the user's settings say at the moment of asking
  thisRun      // the user asked for them on the command line
};

class Machine final : public ModelServices {
 public:
  // Between the two looks of a check that is shown to somebody, in seconds.
  static constexpr double checkSeconds = 1.0;

  // What `outside` names must outlive the machine.
  // `biggest`: so many of the biggest users does a check look for; 0 asks nothing for them.
  Machine(const Outside& outside, PrTitles titles, Checks checks = Checks::many, std::size_t biggest = 0);

  Check check(const std::set<Pid>& termed) override;
  void resetCaches() override;
  std::optional<std::string> apply(const Fix& fix) override;
  std::optional<std::string> ownExecutable() override;
  std::string explainByChild(const std::string& executable, const std::string& evidence) override;
  void freeMemory() override;
  Timestamp now() override { return outside_.clock.now(); }

  // The two halves of a check, one by one, which share its time. The first blocks for about `interval`
  // seconds.
  Snapshot scan(double interval);
  std::vector<Finding> findings(const Snapshot& snapshot, const std::set<Pid>& termed);

  // Both leave their marks here.
  BenchMarks& benchMarks() { return marks_; }

 private:
  // The second half of a check, and its end.
  std::vector<Finding> findingsOf(const Snapshot& snapshot, const std::set<Pid>& termed)
      TARNWICK_REQUIRES(turns_);
  void endCheck();

  const Outside outside_;
  const std::size_t biggest_;
  LimitedToolRunner limitedTools_;
  BenchMarks marks_;
  ToolPlaces places_;
  Docker docker_;
  OneAtATime turns_;
  GitReader git_ TARNWICK_GUARDED_BY(turns_);
  ClaudeReader claude_ TARNWICK_GUARDED_BY(turns_);
  LiveSurroundings surroundings_ TARNWICK_GUARDED_BY(turns_);
  ProcessTable processes_ TARNWICK_GUARDED_BY(turns_);
  Scan scan_ TARNWICK_GUARDED_BY(turns_);
};

}  // namespace tarnwick
