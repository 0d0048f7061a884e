// The plain-text report: what the command line prints and "Copy report" copies. Pure functions; the
// text is UTF-8 with single line feeds, given findings without line ends in their texts, and keeps foreign
// text as it is, other control characters included.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "records/finding.h"
#include "records/snapshot.h"

namespace tarnwick {

// The on-device model's one-line answers, by the evidence text that they explain.
using Guesses = std::map<std::string, std::string>;

// The machine in one line, without a line feed.
std::string header(const Snapshot& snapshot);

// The whole report; `findings` in pipeline order.
std::string text(const Snapshot& snapshot, const std::vector<Finding>& findings, const Guesses& guesses);

}  // namespace tarnwick
