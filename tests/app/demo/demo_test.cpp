// The demo reports as whole files. The files were written from the rules' texts, line by line.
#include <fmt/format.h>

#include "app/demo/demo.h"
#include "app/demo/self_test.h"
#include "diagnosis/report.h"
#include "tests/support/testing.h"

namespace tarnwick {
namespace {

const Timestamp now = timestamp(1'790'000'000);
constexpr const char* dateThere = "second 1789992800";  // as the fake surroundings say it, two hours earlier

std::string expected(const std::string& name) {
  std::string text = textOfFile(TARNWICK_SOURCE_DIR "/tests/app/fixtures/demo/" + name + ".txt");
  const std::string date = "<DATE>";
  const std::size_t at = text.find(date);
  return at == std::string::npos ? text : text.replace(at, date.size(), dateThere);
}

DemoReader readerAt(const std::string& home) {
  return {.self = {4242, 0, home}, .now = now, .mediumDate = [](Timestamp moment) {
            return "second " + std::to_string(static_cast<std::int64_t>(seconds(moment)));
          }};
}

const DemoReader reader = readerAt("/Users/x");

TEST(DemoReports, ReadTheSameForEverybody) {
  for (const char* home : {"/Users/x", "/root", "", "/a/very/long/home/directory/of/somebody"}) {
    for (const char* name : {"base", "memory", "calm", "developer"}) {
      const auto scenario = std::string(name) == "base" ? std::nullopt : std::optional<std::string>(name);
      const Check check = checkDemo(scenario, readerAt(home)).value();
      EXPECT_EQ(text(check.snapshot, check.found, {}), expected(name)) << home;
    }
  }
}

// What the report leaves out and the panel and the model are shown.
std::string demoCards(const std::optional<std::string>& scenario) {
  const Check check = checkDemo(scenario, reader).value();
  std::string cards;
  for (const Finding& f : check.found) {
    cards += fmt::format("{}\n  {} | {} | {} | impact {:.4f} | {} bytes\n  {}\n", f.id, f.subject,
                         f.metric.value_or("-"), f.icon, f.impact, f.bytes, f.summary);
    if (f.evidence) cards += "Evidence:\n" + *f.evidence + "\n";
    cards += "\n";
  }
  return cards;
}

TEST(DemoCards, HaveAllTheirFields) {
  EXPECT_EQ(demoCards(std::nullopt), expected("base-cards"));
  EXPECT_EQ(demoCards("memory"), expected("memory-cards"));
  EXPECT_EQ(demoCards("developer"), expected("developer-cards"));
}

TEST(SelfTest, NamesBothTextsOfTheFirstDifference) {
  EXPECT_EQ(firstMismatch(expectedDiagnoses(), reader), std::nullopt);
  const auto mismatch = [&](auto breakIt) {
    std::vector<ExpectedDiagnosis> diagnoses(expectedDiagnoses().begin(), expectedDiagnoses().end());
    std::vector<ExpectedFinding> findings(diagnoses[1].findings.begin(), diagnoses[1].findings.end());
    diagnoses[1].findings = findings;
    breakIt(diagnoses[1], findings);
    return firstMismatch(diagnoses, reader).value_or("no mismatch");
  };
  using Findings = std::vector<ExpectedFinding>;
  EXPECT_EQ(
      mismatch([](ExpectedDiagnosis& d, Findings&) { d.headline = "Fine."; }),
      "selftest: the headline of the memory demo is “Your Mac is short on memory.” but must be “Fine.”");
  EXPECT_EQ(
      mismatch([](ExpectedDiagnosis&, Findings& f) { f[1].summary = "Broken."; }),
      "selftest: a summary of the memory demo is “Dropbox, Zoom, and 5 more open when you log in.” but must be “Broken.”");
  EXPECT_EQ(
      mismatch([](ExpectedDiagnosis&, Findings& f) { f.back().commands = "kill -KILL 30"; }),
      "selftest: the list of fix commands of the memory demo is “kill -TERM 30” but must be “kill -KILL 30”");
  EXPECT_EQ(mismatch([](ExpectedDiagnosis& d, Findings&) { d.findings = d.findings.first(5); }),
            "selftest: the id of a finding of the memory demo is “caffeinate:30” but must be “”");
  EXPECT_EQ(mismatch([](ExpectedDiagnosis& d, Findings&) { d.scenario = "none"; }),
            "selftest: there is no none demo");
}

const Self self{4242, 501, "/home/ada"};

TEST(Demo, LooksLikeASampledMachine) {
  const Snapshot machine = demoSnapshot(now, std::nullopt, self)->snapshot;
  EXPECT_EQ(std::tuple(machine.procs.size(), machine.apps.size(), machine.now),
            std::tuple(31 + 9, 9 + 2, now));
  EXPECT_THAT(machine.children.at(15), ElementsAre(16, 17)) << "indexed";
  EXPECT_EQ(machine.procs.at(20).app, std::nullopt) << "a bundle outside the application folders";
  EXPECT_EQ(machine.procs.at(61).app, "Google Chrome") << "a helper belongs to the outer bundle";
  for (const auto& [pid, proc] : machine.procs)
    EXPECT_EQ(std::pair(proc.pid, proc.uid), std::pair(pid, self.uid));

  EXPECT_THAT(demoSnapshot(now, "memory", self)->snapshot.procs, SizeIs(40 + 24));
  EXPECT_THAT(demoSnapshot(now, "calm", self)->snapshot.procs, IsEmpty());
  EXPECT_THAT(demoSnapshot(now, "developer", self)->repositories, SizeIs(1));
}

}  // namespace
}  // namespace tarnwick
