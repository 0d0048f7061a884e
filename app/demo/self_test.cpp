#include "app/demo/self_test.h"

#include <algorithm>
#include <vector>

#include "diagnosis/verdict.h"
#include "records/formatted.h"

namespace tarnwick {
namespace {

constexpr double sleepBlockerAge = 7'200;  // seconds, of the demo's oldest sleep blocker

std::string replaced(std::string_view text, std::string_view what, const std::string& with) {
  std::string result(text);
  const std::size_t at = result.find(what);
  if (at != std::string::npos) result.replace(at, what.size(), with);
  return result;
}

std::string commandsOf(const Finding& finding) {
  std::string commands;
  const auto add = [&](const Action& action) {
    commands += (commands.empty() ? "" : "\n") + action.fix.command();
  };
  for (const Step& step : finding.steps) {
    if (step.action) add(*step.action);
  }
  std::for_each(finding.actions.begin(), finding.actions.end(), add);
  return commands;
}

// Compares one demo; keeps the first difference and ignores what follows.
class Comparison {
 public:
  Comparison(std::string_view scenario, std::string home, std::string date)
      : scenario_(scenario), home_(std::move(home)), date_(std::move(date)) {}

  void compare(std::string_view what, std::string_view expected, const std::string& got) {
    const std::string filled = replaced(replaced(expected, "{home}", home_), "{date}", date_);
    if (mismatch_ || filled == got) return;
    mismatch_ =
        formatted("selftest: {} of the {} demo is “{}” but must be “{}”", what, scenario_, got, filled);
  }

  void compare(const ExpectedFinding& expected, const Finding& got) {
    compare("the id of a finding", expected.id, got.id);
    compare("a title", expected.title, got.title);
    compare("a detail", expected.detail, got.detail);
    compare("a summary", expected.summary, got.summary);
    compare("the list of fix commands", expected.commands, commandsOf(got));
  }

  std::optional<std::string> mismatch() const { return mismatch_; }

 private:
  std::string_view scenario_;
  std::string home_;
  std::string date_;
  std::optional<std::string> mismatch_;
};

std::optional<std::string> mismatchOf(const ExpectedDiagnosis& expected, const DemoReader& reader) {
  const std::string_view name = expected.scenario.value_or("base");
  const auto scenario = expected.scenario ? std::optional<std::string>(*expected.scenario) : std::nullopt;
  const std::optional<Check> check = checkDemo(scenario, reader);
  if (!check) return formatted("selftest: there is no {} demo", name);
  const std::vector<Finding>& found = check->found;
  const Verdict answer = verdict(check->snapshot, found);

  Comparison comparison(name, reader.self.home, reader.mediumDate(reader.now - Seconds{sleepBlockerAge}));
  comparison.compare("the headline", expected.headline, answer.headline);
  comparison.compare("the biggest cause", expected.cause, answer.cause.value_or(""));
  for (std::size_t i = 0; i < std::max(found.size(), expected.findings.size()); ++i) {
    comparison.compare(i < expected.findings.size() ? expected.findings[i] : ExpectedFinding{},
                       i < found.size() ? found[i] : Finding{});
  }
  return comparison.mismatch();
}

}  // namespace

std::optional<std::string> firstMismatch(std::span<const ExpectedDiagnosis> expected,
                                         const DemoReader& reader) {
  for (const ExpectedDiagnosis& diagnosis : expected) {
    if (auto mismatch = mismatchOf(diagnosis, reader)) return mismatch;
  }
  return std::nullopt;
}

}  // namespace tarnwick
