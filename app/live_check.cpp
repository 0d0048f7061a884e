#include "app/live_check.h"

#include "diagnosis/findings.h"
#include "sampling/tools/posix/self.h"

namespace tarnwick {

LiveCheck::LiveCheck(const Self& self, bool prTitles)
    : marks_(processorMilliseconds),
      places_(self.home),
      git_(tools_, places_, clock_, self.home, prTitles),
      claude_(self.home),
      surroundings_(self, git_, claude_, places_),
      machine_(liveMachine(self)),
      processes_(machine_->processes()),
      scan_({processes_, machine_->machine(), machine_->workspace(), clock_, marks_}, self.home) {}

Snapshot LiveCheck::scan(double interval) { return scan_.scan(interval); }

std::vector<Finding> LiveCheck::findings(const Snapshot& snapshot, const std::set<Pid>& termed) {
  return tarnwick::findings(snapshot, termed, surroundings_, marks_);
}

}  // namespace tarnwick
