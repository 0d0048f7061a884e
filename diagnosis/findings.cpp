#include "diagnosis/findings.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "diagnosis/detect.h"
#include "records/one_line.h"

namespace tarnwick {
namespace {

// What a rule is given; each row of the table picks what it takes.
struct Question {
  const Snapshot& snapshot;
  const std::set<Pid>& termed;
  Surroundings& surroundings;
};

struct Rule {
  const char* name;
  std::vector<Finding> (*find)(const Question&);
};

constexpr std::array<Rule, 11> rules{{
    {"heat", [](const Question& q) { return heat(q.snapshot); }},
    {"browsers", [](const Question& q) { return browsers(q.snapshot); }},
    {"services", [](const Question& q) { return busyServices(q.snapshot, q.surroundings.self()); }},
    {"disk", [](const Question& q) { return lowDisk(q.snapshot); }},
    {"login items", [](const Question& q) { return loginApps(q.snapshot, q.surroundings.self()); }},
    {"cpu", [](const Question& q) { return cpuHogs(q.snapshot, q.surroundings); }},
    {"docker card", [](const Question& q) { return docker(q.snapshot); }},
    {"simulators", [](const Question& q) { return simulators(q.snapshot, q.surroundings); }},
    {"stacks", [](const Question& q) { return stacks(q.snapshot, q.termed, q.surroundings); }},
    {"test browsers",
     [](const Question& q) { return testBrowsers(q.snapshot, q.termed, q.surroundings.self()); }},
    {"caffeinate", [](const Question& q) { return caffeinates(q.snapshot, q.termed, q.surroundings); }},
}};

bool comesFirst(const Finding& a, const Finding& b) {
  if (a.impact != b.impact) return a.impact > b.impact;
  return a.id < b.id;
}

// Names in the texts come from anywhere; with a line end in one of them it could say a line of the report.
void fold(Finding& finding) {
  for (std::string* text : {&finding.title, &finding.detail, &finding.subject, &finding.summary})
    *text = oneLine(*text);
  if (finding.metric) finding.metric = oneLine(*finding.metric);
  for (Step& step : finding.steps) {
    step.text = oneLine(step.text);
    if (step.action) step.action->label = oneLine(step.action->label);
  }
  for (Action& action : finding.actions) action.label = oneLine(action.label);
}

}  // namespace

std::vector<Finding> findings(const Snapshot& snapshot, const std::set<Pid>& termed,
                              Surroundings& surroundings, BenchMarks& benchMarks) {
  std::vector<Finding> all;
  for (const Rule& rule : rules) {
    std::vector<Finding> found = rule.find({snapshot, termed, surroundings});
    benchMarks.mark(rule.name);
    std::move(found.begin(), found.end(), std::back_inserter(all));
  }
  std::for_each(all.begin(), all.end(), fold);
  std::stable_sort(all.begin(), all.end(), comesFirst);
  return all;
}

}  // namespace tarnwick
