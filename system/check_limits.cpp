#include "system/check_limits.h"

#include <algorithm>
#include <limits>

namespace tarnwick {

double Deadline::left() const {
  if (clock_ == nullptr) return std::numeric_limits<double>::infinity();
  return std::max(moment_ - clock_->uptime(), 0.0);
}

void CheckLimits::begin() {
  deadline_ = Deadline(clock_, checkLimitSeconds);
  leftOut_.clear();
}

Deadline CheckLimits::within(double seconds) const { return {clock_, std::min(seconds, deadline_.left())}; }

void CheckLimits::leaveOut(const std::string& who) {
  ++misses_;
  if (std::ranges::find(leftOut_, who) == leftOut_.end()) leftOut_.push_back(who);
}

}  // namespace tarnwick
