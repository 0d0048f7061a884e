#include "app/watch/watch_mode.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/cli/json_report.h"
#include "app/cli/output.h"
#include "app/cli/terminal_text.h"
#include "diagnosis/changes.h"
#include "records/formatted.h"

namespace tarnwick {
namespace {

constexpr int usualSeconds = 60;
constexpr int leastSeconds = 5;
constexpr int mostSeconds = 86'400;

// Absent when the text is no pace.
std::optional<int> pace(const std::optional<std::string>& text) {
  if (!text) return usualSeconds;
  int seconds = 0;
  const char* end = text->data() + text->size();
  const auto [rest, error] = std::from_chars(text->data(), end, seconds);
  const bool isNumber = error == std::errc() && rest == end;
  return isNumber && seconds >= leastSeconds && seconds <= mostSeconds ? std::optional(seconds)
                                                                       : std::nullopt;
}

std::string_view opening(Change::Kind kind) {
  switch (kind) {
    case Change::Kind::verdict:
      break;
    case Change::Kind::came:
      return "New: ";
    case Change::Kind::grew:
      return "More: ";
    case Change::Kind::went:
      return "Gone: ";
  }
  return "";
}

// When, what, and what to do about it.
std::string lineOf(const Change& change, const std::string& when) {
  std::string line = formatted("{}  {}{}", when, opening(change.kind), change.text);
  if (change.remedy) appendFormatted(line, "  [{}]  {}", change.remedy->label, change.remedy->fix.command());
  return line + "\n";
}

class Watch {
 public:
  explicit Watch(const ProgramRun& run)
      : run_(run),
        machine_(run.outside(), titlesOf(run.words), Checks::many, run.words.json ? usualRows : 0) {}

  // The exit status when the watch is over.
  std::optional<int> checkOnce() {
    Check check = lookAtMachine();
    if (!check.seen) return before_ ? std::nullopt : std::optional(complainUnseen());
    if (check.leftOut != leftOut_ && !check.leftOut.empty()) complain(leftOutText(check.leftOut));
    leftOut_ = check.leftOut;
    Result now{.verdict = verdict(check.snapshot, check.found), .findings = std::move(check.found)};
    const std::vector<Change> all = changes(before_, now);
    const int status = all.empty()       ? 0
                       : run_.words.json ? printDocument(check, now.findings)
                                         : printLines(all, check);
    before_ = asLastTold(before_, std::move(now));
    check = {};
    machine_.freeMemory();
    return status == 0 ? std::nullopt : std::optional(status);
  }

 private:
  // Only the first keeps somebody waiting.
  Check lookAtMachine() {
    std::optional<WaitingLine> waiting;
    if (!before_) waiting.emplace("Checking your Mac…");
    return machine_.check({});
  }

  int printLines(const std::vector<Change>& all, const Check& check) const {
    std::string lines;
    for (const Change& change : all) lines += lineOf(change, localTime(check.snapshot.now));
    return run_.print(lines);
  }

  int printDocument(const Check& check, const std::vector<Finding>& found) const {
    return run_.printDocument(
        jsonReport({check.snapshot, found, {}, check.users, check.leftOut}, JsonLayout::oneLine));
  }

  const ProgramRun& run_;
  Machine machine_;
  std::optional<Result> before_;      // as it was last told; absent before the first check
  std::vector<std::string> leftOut_;  // by the last check
};

}  // namespace

int runWatch(const ProgramRun& run) {
  const std::optional<int> seconds = pace(run.words.watchSeconds);
  if (!seconds)
    return complain(formatted("“{}” is no pace: --watch takes whole seconds from {} to {}.",
                              harmlessInLine(*run.words.watchSeconds), leastSeconds, mostSeconds));
  Watch watch(run);
  do {
    if (const std::optional<int> status = watch.checkOnce()) return *status;
  } while (run.rest(*seconds));
  return 0;
}

}  // namespace tarnwick
