// The demo reports as whole files. The files were written from the rules' texts, line by line.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "app/demo.h"
#include "app/demo_surroundings.h"
#include "app/self_test.h"
#include "diagnosis/findings.h"
#include "diagnosis/report.h"
#include "tests/support/fake_surroundings.h"

namespace tarnwick {
namespace {

const Timestamp now = timestamp(1'790'000'000);
constexpr const char* dateThere = "second 1789992800";  // as the fake surroundings say it, two hours earlier

std::string expectedReport(const std::string& name) {
  std::stringstream file;
  file << std::ifstream(TARNWICK_SOURCE_DIR "/tests/app/fixtures/demo/" + name + ".txt").rdbuf();
  std::string report = file.str();
  const std::string date = "<DATE>";
  const std::size_t at = report.find(date);
  return at == std::string::npos ? report : report.replace(at, date.size(), dateThere);
}

std::string demoReport(const std::optional<std::string>& scenario, FakeSurroundings& live) {
  const Demo demo = demoSnapshot(now, scenario, live.who).value();
  DemoSurroundings surroundings(demo, live);
  BenchMarks unarmed([] { return 0.0; });
  return text(demo.snapshot, findings(demo.snapshot, {}, surroundings, unarmed), {});
}

TEST(DemoReports, ReadTheSameForEverybody) {
  for (const char* home : {"/Users/x", "/root", "", "/a/very/long/home/directory/of/somebody"}) {
    FakeSurroundings live;
    live.who.home = home;
    live.who.uid = 0;
    // What lies on this machine in the demo's invented places must not show.
    live.present = {"/tmp/wt/.git", "/tmp/.git", live.who.home + "/tarnwick-selftest/.git"};
    live.repositories["/tmp/wt"] = {.repo = "real", .branch = "main"};
    live.sessions[12] = {.title = "real"};
    EXPECT_EQ(demoReport(std::nullopt, live), expectedReport("base")) << home;
    for (const char* scenario : {"memory", "calm", "developer"}) {
      EXPECT_EQ(demoReport(scenario, live), expectedReport(scenario)) << home;
    }
  }
}

TEST(SelfTest, AcceptsTheDemosAsTheyAre) {
  FakeSurroundings live;
  EXPECT_EQ(firstMismatch(expectedDiagnoses(), now, live), std::nullopt);
}

TEST(SelfTest, NamesBothTextsOfTheFirstDifference) {
  FakeSurroundings live;
  const auto mismatch = [&](auto breakIt) {
    std::vector<ExpectedDiagnosis> diagnoses(expectedDiagnoses().begin(), expectedDiagnoses().end());
    std::vector<ExpectedFinding> findings(diagnoses[1].findings.begin(), diagnoses[1].findings.end());
    diagnoses[1].findings = findings;
    breakIt(diagnoses[1], findings);
    return firstMismatch(diagnoses, now, live).value_or("no mismatch");
  };
  using Findings = std::vector<ExpectedFinding>;
  EXPECT_EQ(mismatch([](ExpectedDiagnosis& d, Findings&) { d.headline = "All is well."; }),
            "selftest: the headline of the memory demo is “Your Mac is short on memory.” but must be “All is "
            "well.”");
  EXPECT_EQ(mismatch([](ExpectedDiagnosis&, Findings& f) { f[1].summary = "Broken."; }),
            "selftest: a summary of the memory demo is “Dropbox, Zoom, and 5 more open when you log in.” but "
            "must be "
            "“Broken.”");
  EXPECT_EQ(
      mismatch([](ExpectedDiagnosis&, Findings& f) { f.back().commands = "kill -KILL 30"; }),
      "selftest: the list of fix commands of the memory demo is “kill -TERM 30” but must be “kill -KILL 30”");
  EXPECT_EQ(mismatch([](ExpectedDiagnosis& d, Findings&) { d.findings = d.findings.first(5); }),
            "selftest: the id of a finding of the memory demo is “caffeinate:30” but must be “”");
  EXPECT_EQ(mismatch([](ExpectedDiagnosis& d, Findings&) { d.scenario = "none"; }),
            "selftest: there is no none demo");
}

}  // namespace
}  // namespace tarnwick
