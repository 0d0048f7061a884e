// What a scan asks the container engine and the browsers, and how long it lives on the answers.
#include <gmock/gmock.h>

#include "tests/sampling/scan_machine.h"

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

constexpr const char* safari = "com.apple.Safari";
constexpr const char* chrome = "com.google.Chrome";
constexpr const char* firefox = "org.mozilla.firefox";

struct Machine : ScanMachine {
  Machine() {
    engine.replies["GET /containers/json"] = "HTTP/1.0 200 OK\r\n\r\n[{\"Id\":\"c1\",\"Names\":[\"/db\"]}]";
    for (const char* id : {firefox, chrome, safari})
      workspace.apps.push_back({1, "Browser", id, "/b", false});
    browsers.permissions = {{safari, Access::allowed}, {chrome, Access::denied}, {firefox, Access::allowed}};
    browsers.tabs[safari] = {.duplicates = 3};
  }

  // The containers after `seconds` more, without the clock moving for the scan itself.
  std::vector<Container> containersAfter(double seconds) {
    clock.turn(seconds);
    return driver.scan(0).containers;
  }
  std::size_t listsAsked() {
    std::size_t lists = 0;
    for (const auto& asked : engine.asked())
      lists += asked.request.starts_with("GET /containers/json ") ? 1U : 0U;
    return lists;
  }
};

TEST(ScanCaches, TheEngineIsAskedOnceInSixtySeconds) {
  Machine m;
  EXPECT_THAT(m.containersAfter(0), SizeIs(1));
  m.engine.replies.clear();  // from now on an asked engine has nothing to say
  EXPECT_THAT(m.containersAfter(60), SizeIs(1)) << "exactly 60 s old is not more than 60 s";
  EXPECT_EQ(m.listsAsked(), 1U);
  EXPECT_THAT(m.containersAfter(0.5), IsEmpty());
  EXPECT_EQ(m.listsAsked(), 2U);
  EXPECT_THAT(m.containersAfter(10), IsEmpty());
  EXPECT_EQ(m.listsAsked(), 2U) << "an empty answer is an answer too";
  m.driver.resetCaches();
  m.containersAfter(0);
  EXPECT_EQ(m.listsAsked(), 3U);
  m.containersAfter(-100);
  EXPECT_EQ(m.listsAsked(), 4U) << "a clock that was set back does not freeze the answer";
}

TEST(ScanCaches, AnEngineThatQuitIsForgottenAtOnce) {
  Machine m;
  m.containersAfter(0);
  m.dockerRuns = false;
  EXPECT_THAT(m.containersAfter(1), IsEmpty());
  m.dockerRuns = true;
  EXPECT_THAT(m.containersAfter(1), SizeIs(1));
  EXPECT_EQ(m.listsAsked(), 2U);
}

TEST(ScanCaches, TheEngineAnswersWhileTheScanWaitsAnyway) {
  Machine m;
  struct SlowEngine : SocketTransport {
    explicit SlowEngine(FakeClock& c) : clock(c) {}
    FakeClock& clock;
    bool reachable(const std::string&) override { return true; }
    std::optional<std::string> exchange(const std::string&, std::string_view,
                                        const ExchangeLimits&) override {
      clock.turn(0.75);
      return std::nullopt;
    }
  } slow{m.clock};
  Docker docker(slow, {"/engine.sock"});
  Scan driver(
      {m.processes, m.machine, m.workspace, m.clock, m.marks, docker, [] { return true; }, m.browsers}, "/");
  driver.scan(1);
  EXPECT_THAT(m.clock.sleeps, ElementsAre(0.25));
}

TEST(ScanCaches, BrowsersAreAskedForPermissionAndOnlyThenForTabs) {
  Machine m;
  const Snapshot snapshot = m.driver.scan(0);
  EXPECT_THAT(snapshot.access, ElementsAre(Pair(safari, Access::allowed), Pair(chrome, Access::denied)))
      << "Firefox cannot be scripted, others do not run";
  EXPECT_THAT(snapshot.tabs, ElementsAre(Pair(safari, Tabs{3, {}})));
  EXPECT_EQ(m.browsers.tabsRead, 1);
}

TEST(ScanCaches, TabsAreReadOnceInThirtySecondsFailedReadsIncluded) {
  for (const bool readable : {true, false}) {
    Machine m;
    if (!readable) m.browsers.tabs.clear();
    const auto tabsAfter = [&](double seconds) {
      m.clock.turn(seconds);
      return m.driver.scan(0).tabs.size();
    };
    const std::size_t expected = readable ? 1 : 0;
    EXPECT_EQ(tabsAfter(0), expected);
    EXPECT_EQ(tabsAfter(29.5), expected);
    EXPECT_EQ(m.browsers.tabsRead, 1);
    EXPECT_EQ(tabsAfter(0.5), expected);
    EXPECT_EQ(m.browsers.tabsRead, 2) << "30 s old is no longer younger than 30 s";
    m.driver.resetCaches();
    tabsAfter(1);
    EXPECT_EQ(m.browsers.tabsRead, 3);
    m.browsers.permissions[safari] = Access::notAsked;
    EXPECT_EQ(tabsAfter(1), 0U) << "what was read before the permission went is not shown";
  }
}

}  // namespace
}  // namespace tarnwick
