#include "app/live_check.h"

#include "app/live_parts.h"
#include "diagnosis/findings.h"
#include "system/port.h"
#include "system/self.h"

namespace tarnwick {
LiveCheck::LiveCheck(const Self& self, std::function<bool()> prTitles)
    : marks_(processorMilliseconds),
      places_(self.home),
      docker_(transport_, engineSocketPlaces(self)),
      browsers_(liveBrowsers(tools_)),
      git_(tools_, places_, clock_, self.home, std::move(prTitles)),
      claude_(self.home),
      surroundings_(self, git_, claude_, places_),
      machine_(liveMachine(self)),
      targets_(liveFixTargets({docker_, *browsers_, tools_, places_}, *machine_, self)),
      processes_(machine_->processes()),
      scan_({processes_, machine_->machine(), machine_->workspace(), clock_, marks_, docker_,
             [this] { return machine_->dockerRuns(docker_); }, *browsers_},
            self.home) {}

Snapshot LiveCheck::scan(double interval) { return scan_.scan(interval); }

std::vector<Finding> LiveCheck::findings(const Snapshot& snapshot, const std::set<Pid>& termed) {
  return tarnwick::findings(snapshot, termed, surroundings_, marks_);
}

}  // namespace tarnwick
