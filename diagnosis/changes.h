// What two checks say about the same machine, side by side. Pure functions.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "diagnosis/verdict.h"
#include "records/finding.h"

namespace tarnwick {

// What one check has found, as far as two are compared.
struct Result {
  Verdict verdict;
  std::vector<Finding> findings;  // in pipeline order
};

// The finding about the same cause; null when the cause is gone.
const Finding* sameCause(const Finding& cause, const std::vector<Finding>& findings);

// How many bytes the cause holds less than before: all of them when it is gone. Absent when it is still there
// and holds no less.
std::optional<std::uint64_t> freedSince(const Finding& before, const std::vector<Finding>& findings);

// One thing that is worth a line to somebody who watches.
struct Change {
  enum class Kind {
    verdict,  // another headline
    came,     // a cause that was not there
    grew,     // a cause that takes at least a tenth of the machine more
    went      // a cause that is no longer there
  };
  Kind kind = Kind::verdict;
  std::string text;              // one line: the verdict with its cause; of a cause its title and figure
  std::optional<Action> remedy;  // the main one of a cause that came or grew, where it has any

  bool operator==(const Change&) const = default;
};

// The verdict first, then the causes of `after` in their order, then those that went. Before the first check
// nothing is known: `before` is absent, and everything comes.
std::vector<Change> changes(const std::optional<Result>& before, const Result& after);

// What the check after `after` is to be compared with: `after`, but a cause that did not grow by a tenth
// keeps the size that it was last told with, so that slow growth is told as well and a cause that goes up and
// down is not told each time.
Result asLastTold(const std::optional<Result>& before, Result after);

}  // namespace tarnwick
