// The plain-text report: what the command line prints and "Copy report" copies. Pure functions; the
// text is UTF-8 with single line feeds, given findings without line ends in their texts, and keeps foreign
// text as it is, other control characters included.
#pragma once

#include <cstddef>
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

// One line of the report, with what a reader may want to do with it beyond reading.
struct ReportLine {
  std::string text;                  // without its line feed
  bool isHeading = false;            // the label of a bucket
  const Finding* finding = nullptr;  // whose remedy stands at its end; null: none does
  const Action* action = nullptr;    // that remedy
  std::size_t actionAt = 0;          // where it begins, in bytes
};

// The whole report by lines, which point into `findings`, in pipeline order.
std::vector<ReportLine> reportLines(const Snapshot& snapshot, const std::vector<Finding>& findings,
                                    const Guesses& guesses);

// The same in one text; each line ends in a line feed.
std::string text(const Snapshot& snapshot, const std::vector<Finding>& findings, const Guesses& guesses);

}  // namespace tarnwick
