// The demos as they read. What the self-test knows of a finding (id, title, detail, summary) is written down
// there alone; the fixtures hold the rest: the reports around those texts, and behind a line of dashes the
// fields of the cards. They were written from the rules, line by line.
#include <fmt/format.h>

#include "app/demo/demo.h"
#include "app/demo/self_test.h"
#include "diagnosis/report.h"
#include "tests/support/testing.h"

namespace {

const Timestamp now = timestamp(1'790'000'000);
constexpr const char* blockerDate = "second 1789992800";  // of the sleep blocker, two hours earlier

DemoReader readerAt(const std::string& home) {
  return {.self = {4242, 0, home}, .now = now, .mediumDate = [](Timestamp moment) {
            return "second " + std::to_string(static_cast<std::int64_t>(seconds(moment)));
          }};
}

const DemoReader reader = readerAt("/Users/x");

std::string replaced(std::string text, std::string_view what, std::string_view with) {
  const std::size_t at = text.find(what);
  return at == std::string::npos ? text : text.replace(at, what.size(), with);
}

// The report with the id in the place of each title and detail that the self-test expects.
std::string report(const Check& check, const ExpectedDiagnosis& known) {
  std::string report = text(check.snapshot, check.found, {});
  for (const ExpectedFinding& finding : known.findings) {
    const std::string detail = replaced(std::string(finding.detail), "{date}", blockerDate);
    report = replaced(report, fmt::format("  {}\n  {}\n", finding.title, detail),
                      fmt::format("  <{}>\n", replaced(std::string(finding.id), "{home}", "/Users/x")));
  }
  return report;
}

// What the report leaves out and the panel and the model are shown.
std::string cards(const Check& check) {
  std::string cards;
  for (const Finding& f : check.found) {
    cards += fmt::format("{}\n  {} | {} | {} | impact {:.4f} | {} bytes\n", f.id, f.subject,
                         f.metric.value_or("-"), f.icon, f.impact, f.bytes);
    if (f.evidence) cards += "Evidence:\n" + *f.evidence + "\n";
    cards += "\n";
  }
  return cards.empty() ? cards : "\n---\n" + cards;
}

TEST(DemoReports, ReadAsTheyShouldAndTheSameForEverybody) {
  for (const ExpectedDiagnosis& known : expectedDiagnoses()) {
    const std::string name(known.scenario.value_or("base"));
    const auto scenario = known.scenario ? std::optional(name) : std::nullopt;
    const Check check = checkDemo(scenario, reader).value();
    EXPECT_EQ(report(check, known) + cards(check),
              textOfFile(TARNWICK_SOURCE_DIR "/tests/app/fixtures/demo/" + name + ".txt"));
    for (const char* home : {"/root", "", "/a/very/long/home/directory/of/somebody"}) {
      const Check elsewhere = checkDemo(scenario, readerAt(home)).value();
      EXPECT_EQ(text(elsewhere.snapshot, elsewhere.found, {}), text(check.snapshot, check.found, {})) << home;
    }
  }
}

TEST(SelfTest, NamesBothTextsOfTheFirstDifference) {
  ASSERT_EQ(firstMismatch(expectedDiagnoses(), reader), std::nullopt);
  const auto mismatch = [&](auto breakIt) {
    std::vector<ExpectedDiagnosis> diagnoses(expectedDiagnoses().begin(), expectedDiagnoses().end());
    std::vector<ExpectedFinding> findings(diagnoses[1].findings.begin(), diagnoses[1].findings.end());
    diagnoses[1].findings = findings;
    breakIt(diagnoses[1], findings);
    return firstMismatch(diagnoses, reader).value_or("no mismatch");
  };
  using Findings = std::vector<ExpectedFinding>;
  const std::pair<std::function<void(ExpectedDiagnosis&, Findings&)>, const char*> cases[] = {
      {[](auto&, auto& f) { f[1].summary = "Broken."; },
       "a summary of the memory demo is “Dropbox, Zoom, and 5 more open when you log in.” but must be “Broken.”"},
      {[](auto&, auto& f) { f.back().commands = "kill -KILL 30"; },
       "the list of fix commands of the memory demo is “kill -TERM 30” but must be “kill -KILL 30”"},
      {[](auto& d, auto&) { d.findings = d.findings.first(5); },
       "the id of a finding of the memory demo is “caffeinate:30” but must be “”"},
      {[](auto& d, auto&) { d.scenario = "none"; }, "there is no none demo"}};
  for (const auto& [breakIt, difference] : cases)
    EXPECT_EQ(mismatch(breakIt), std::string("selftest: ") + difference);
}

}  // namespace
