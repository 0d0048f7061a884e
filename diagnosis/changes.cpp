#include "diagnosis/changes.h"

#include <algorithm>
#include <utility>

namespace tarnwick {
namespace {

// A tenth of the machine, less what is lost where shares are subtracted.
constexpr double muchGrowth = 0.1 - 1e-9;

bool hasGrown(const Finding& before, const Finding& after) {
  return after.impact - before.impact >= muchGrowth;
}

std::optional<Action> mainRemedy(const Finding& finding) {
  if (!finding.actions.empty()) return finding.actions.front();
  const auto step = std::ranges::find_if(finding.steps, [](const Step& s) { return s.action.has_value(); });
  return step == finding.steps.end() ? std::nullopt : step->action;
}

Change changeOf(Change::Kind kind, const Finding& finding) {
  const std::string figure = finding.metric ? " (" + *finding.metric + ")" : "";
  return {kind, finding.title + figure, mainRemedy(finding)};
}

std::string sentence(const Verdict& verdict) {
  return verdict.cause ? verdict.headline + " " + *verdict.cause : verdict.headline;
}

}  // namespace

const Finding* sameCause(const Finding& cause, const std::vector<Finding>& findings) {
  const auto same = std::ranges::find(findings, cause.id, &Finding::id);
  return same == findings.end() ? nullptr : &*same;
}

std::optional<std::uint64_t> freedSince(const Finding& before, const std::vector<Finding>& findings) {
  const Finding* after = sameCause(before, findings);
  if (after == nullptr) return before.bytes;
  if (before.bytes <= after->bytes) return std::nullopt;
  return before.bytes - after->bytes;
}

std::vector<Change> changes(const std::optional<Result>& before, const Result& after) {
  const std::vector<Finding> none;
  const std::vector<Finding>& known = before ? before->findings : none;
  std::vector<Change> all;
  if (!before || before->verdict.headline != after.verdict.headline)
    all.push_back({Change::Kind::verdict, sentence(after.verdict), std::nullopt});
  for (const Finding& finding : after.findings) {
    const Finding* earlier = sameCause(finding, known);
    if (earlier == nullptr) {
      all.push_back(changeOf(Change::Kind::came, finding));
    } else if (hasGrown(*earlier, finding)) {
      all.push_back(changeOf(Change::Kind::grew, finding));
    }
  }
  for (const Finding& finding : known) {
    if (sameCause(finding, after.findings) == nullptr)
      all.push_back({Change::Kind::went, finding.title, std::nullopt});
  }
  return all;
}

Result asLastTold(const std::optional<Result>& before, Result after) {
  if (!before) return after;
  for (Finding& finding : after.findings) {
    const Finding* earlier = sameCause(finding, before->findings);
    if (earlier != nullptr && !hasGrown(*earlier, finding)) finding.impact = earlier->impact;
  }
  return after;
}

}  // namespace tarnwick
