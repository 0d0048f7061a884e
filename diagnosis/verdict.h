// The one-line answer at the top of the panel.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "records/finding.h"
#include "records/snapshot.h"

namespace tarnwick {

struct Verdict {
  std::string headline;
  std::optional<std::string> cause;  // "The biggest cause: ….", where one is named
  bool ok = false;                   // the Mac looks fine

  bool operator==(const Verdict&) const = default;
};

// `findings` in pipeline order. Findings that are only left over never make a Mac slow.
Verdict verdict(const Snapshot& snapshot, const std::vector<Finding>& findings);

}  // namespace tarnwick
