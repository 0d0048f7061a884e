#include "sampling/scan.h"
#include "sampling/container_group.h"
#include "sampling/decode/memory_saver.h"
#include "tests/support/fake_browsers.h"
#include "tests/support/fake_machine_source.h"
#include "tests/support/fake_process_source.h"
#include "tests/support/fake_transport.h"

namespace {

constexpr const char* safari = "com.apple.Safari";
constexpr const char* chrome = "com.google.Chrome";
constexpr const char* firefox = "org.mozilla.firefox";

// One process that is looked at twice, two applications, three browsers that may answer, an engine that is
// off.
struct Machine {
  Machine() {
    process.clock = &clock;
    process.firstLook = 0.25;
    process.secondLook = 0.5;
    process.processes[40] = {.facts = ProcessFacts{.ppid = 7, .uid = 1, .started = 1'700'000'000 - 43'200},
                             .usage = ProcessUsage{.footprint = 5, .resident = 6, .processorTime = 1'050},
                             .firstTime = 300,
                             .ports = {80}};
    workspace.apps = {{9, "Mail", "org.mail", "/mail", false}, {8, "Bar", "org.bar", "/bar", true}};
    engine.replies["GET /containers/json"] =
        "HTTP/1.0 200 OK\r\n\r\n[{\"Id\":\"c00000000001\",\"Names\":[\"/db\"]}]";
    browsers.permissions = {{safari, Access::allowed}, {chrome, Access::denied}, {firefox, Access::allowed}};
    browsers.tabs[safari] = {.duplicates = 3};
  }

  Snapshot scan(double interval = 1) { return driver.scan(interval); }

  // One that takes no time itself, after so many seconds.
  Snapshot scanAfter(double seconds) {
    process.firstLook = process.secondLook = 0;
    clock.turn(seconds);
    return driver.scan(0);
  }

  FakeClock clock;
  FakeProcessSource process;
  FakeMachineSource machine;
  FakeWorkspace workspace;
  double spent = 0;
  BenchMarks marks{[this] { return spent += 1; }};
  ProcessTable processes{process};
  TempFolder home;
  FakeTransport engine;
  Docker docker{engine, {"/engine.sock"}};
  bool dockerRuns = false;
  FakeBrowsers browsers;
  Scan driver{{processes, machine, workspace, clock, marks, docker, [this] { return dockerRuns; }, browsers},
              home.path()};
};

// What the sources say, for comparison.
auto counters(const Snapshot& s) {
  return std::tuple(s.procs.size(), s.apps.size(), s.ram, s.cores, s.uptime, s.cpuBusy, s.thermal, s.pressure,
                    s.swapUsed, s.diskFree, s.diskTotal);
}

TEST(Scan, FillsTheSnapshot) {
  Machine m;
  const Snapshot s = m.scan();
  EXPECT_EQ(counters(s), std::tuple(1U, 2U, 16'000'000'000U, 8, 10'001.5, 0.3, ThermalState::serious, 4,
                                    3'000'000'000U, 50'000'000'000, 500'000'000'000));
  EXPECT_DOUBLE_EQ(s.procs.at(40).cpu, 0.5);
  EXPECT_EQ(std::tie(s.children.at(7), s.apps), std::tuple(std::vector<Pid>{40}, m.workspace.apps));
  EXPECT_EQ(s.now, timestamp(1'700'000'001.5));  // after the second look, not before it
  EXPECT_TRUE(s.containers.empty() && s.access.empty() && s.tabs.empty() && !s.memorySaver);
}

TEST(Scan, SleepsForTheRestOfTheInterval) {
  // The interval, seconds of the first look and until the engine answers, the sleep.
  const std::tuple<double, double, double, double> cases[] = {
      {1, 0.25, 0, 0.75}, {1, 0, 0, 1},  {0.5, 0.5, 0, 0},  {0.5, 3, 0, 0},
      {0, 0, 0, 0},       {-1, 0, 0, 0}, {1, 0, 0.75, 0.25}};
  for (const auto& [interval, firstLook, engine, sleep] : cases) {
    Machine m;
    m.dockerRuns = true;
    m.process.firstLook = firstLook;
    m.engine.onAsked = [&m, seconds = engine] { m.clock.turn(seconds); };
    m.engine.replies.clear();
    m.scan(interval);
    EXPECT_EQ(m.clock.sleeps, std::vector<double>{sleep}) << interval << " " << firstLook << " " << engine;
  }
}

TEST(Scan, ProcessorShareStaysBetweenNothingAndAll) {
  const std::tuple<CpuTicks, CpuTicks, double> cases[] = {
      {{100, 1000}, {125, 1100}, 0.25}, {{100, 1000}, {100, 1000}, 0},  // did not move
      {{100, 1000}, {101, 1000}, 1},                                    // busy moved alone
      {{100, 1000}, {300, 1100}, 1},    {{100, 1000}, {90, 1100}, 0},   // backwards
      {{100, 1000}, {0, 0}, 0},                                         // unreadable at the end
      {{0, 0}, {100, 1000}, 0}};                                        // unreadable at the start
  for (const auto& [before, after, share] : cases) {
    Machine m;
    m.machine.ticks = {before, after};
    EXPECT_DOUBLE_EQ(m.scan().cpuBusy, share) << after.busy << " of " << after.total;
  }
}

TEST(Scan, ProcessesTogetherNeverUseMoreThanTheCores) {
  const std::pair<int, double> cases[] = {{2, 1}, {3, 1.5}, {0, 1.5}};  // 0: unknown
  for (const auto& [cores, each] : cases) {
    Machine m;
    m.machine.coresAnswer = cores;
    m.process.firstLook = m.process.secondLook = 0;
    FakeProcess& process = m.process.processes[40];
    process.firstTime = 0;
    process.usage->processorTime = 1'500;  // one and a half cores in the second between the looks
    m.process.processes[41] = process;
    const Snapshot s = m.scan();
    for (const Pid pid : {40, 41}) EXPECT_DOUBLE_EQ(s.procs.at(pid).cpu, each) << cores;
  }
}

TEST(Scan, OthersAreAskedAboutOnlyWhereTheUsersOwnExplainLessThanHalf) {
  const std::uint64_t half = 8'000'000'000;
  // Busy ticks of 100 on 8 cores, the user's own cores, the pressure, the user's own bytes.
  const std::tuple<const char*, std::uint64_t, double, int, std::uint64_t, bool> cases[] = {
      {"idle", 12, 0, 1, 0, false},    {"busy", 50, 1.999, 1, 0, true},
      {"mine", 50, 2, 1, 0, false},    {"short of memory", 0, 0, 2, half - 1, true},
      {"mine", 0, 0, 2, half, false},  {"enough memory", 0, 0, 1, 0, false},
      {"one core", 13, 0, 1, 0, true}, {"mine", 13, 0.6, 1, 0, false}};
  for (const auto& [what, busy, own, pressure, footprint, asked] : cases) {
    Machine m;
    m.process.firstLook = m.process.secondLook = 0;
    m.machine.ticks = {{0, 1000}, {busy, 1100}};
    m.machine.pressureAnswer = pressure;
    m.process.processes[40].firstTime = 0;
    m.process.processes[40].usage = ProcessUsage{footprint, 0, static_cast<std::uint64_t>(own * 1000)};
    m.process.strangers[50] = {.uid = 0, .name = "backupd", .resident = 7, .processorTime = 0};
    EXPECT_THAT(m.scan().others, SizeIs(asked ? 1 : 0)) << what;
    EXPECT_EQ(std::ranges::count(m.process.asked, "stranger 50"), asked) << what;
  }
}

TEST(Scan, EverybodyIsAskedAboutWhereThatIsWanted) {
  Machine m;
  m.machine.pressureAnswer = 1;
  m.machine.ticks = {{0, 1000}, {0, 1100}, {0, 1000}, {0, 1100}};
  m.machine.inUseAnswer = 5'000'000'000;
  m.machine.groups = {{{"aaaaaaaaaaaa", 10, 0, {}}}, {{"aaaaaaaaaaaa", 10, 0, {52}}}};
  m.process.strangers = {{50, {.uid = 0, .name = "kswapd0", .started = 7, .kernel = true}},
                         {51, {.uid = 33, .name = "php", .resident = 9}},
                         {52, {.uid = 34, .name = "contained", .resident = 9}}};
  m.process.strangersMemory[51] = 4;
  m.process.userNames = {{33, "www-data"}};
  const Snapshot s = m.driver.scan(1, Everybody::asked);
  EXPECT_EQ(s.others,
            (std::vector<OtherProc>{{50, 0, "kswapd0", 0, 0, timestamp(7), std::nullopt, true, false},
                                    {51, 33, "php", 9, 0, timestamp(0), 4, false, false},
                                    {52, 34, "contained", 9, 0, timestamp(0), std::nullopt, false, true}}));
  EXPECT_EQ(s.userNames, (std::map<std::uint32_t, std::string>{{33, "www-data"}}));
  EXPECT_EQ(s.memoryInUse, 8'000'000'000U) << "with what lies in swap";
  EXPECT_THAT(m.process.asked, Not(Contains("memory of stranger 50"))) << "the kernel's threads have none";
  EXPECT_TRUE(m.scan().others.empty());
  m.machine.inUseAnswer = 0;
  EXPECT_EQ(m.scan().memoryInUse, 0U) << "unknown, not only what lies in swap";
}

// The engine takes a second to measure a container; the control group has the same at once.
TEST(Scan, ContainersWithoutAMachineAreMeasuredByTheirGroups) {
  constexpr std::uint64_t second = 1'000'000'000;
  Machine m;
  m.process.secondLook = 0;
  m.dockerRuns = true;
  m.engine.replies["GET /containers/json"] =
      "HTTP/1.0 200 OK\r\n\r\n[{\"Id\":\"aaaaaaaaaaaaffff\"},{\"Id\":\"cccccccccccc\"}]";
  m.machine.groups = {{{"aaaaaaaaaaaa", 10, 5 * second, {}}, {"bbbbbbbbbbbb", 20, 9 * second, {}}},
                      {{"aaaaaaaaaaaa", 100, 7 * second, {40, 99}},
                       {"bbbbbbbbbbbb", 200, 8 * second, {}},    // went backwards
                       {"dddddddddddd", 400, 8 * second, {}}}};  // started meanwhile
  const Snapshot s = m.scan();
  EXPECT_EQ(s.containerLoad, (ContainerLoad{.count = 3, .bytes = 700, .cpu = 2}));
  EXPECT_EQ(s.containerUse,
            (std::vector<ContainerUse>{
                {"aaaaaaaaaaaa", 100, 2, 2}, {"bbbbbbbbbbbb", 200, 0, 0}, {"dddddddddddd", 400, 0, 0}}));
  EXPECT_TRUE(s.procs.at(40).inContainer);
  ASSERT_EQ(s.containers.size(), 2U);
  EXPECT_EQ(std::tuple(s.containers[0].mem, s.containers[1].mem), std::tuple(100U, 0U));
  EXPECT_THAT(m.engine.asked(), SizeIs(2)) << "the list, and the one container without a group";
  const Snapshot none = m.scan();
  EXPECT_EQ(none.containerLoad, std::nullopt);
  EXPECT_FALSE(none.procs.at(40).inContainer);
}

TEST(Scan, AsksForPurgeableSpaceOnlyWhenDiskIsScarce) {
  const std::tuple<std::int64_t, std::optional<std::int64_t>, std::int64_t, int> cases[] = {
      {32'212'254'720, 90, 32'212'254'720, 0},
      {32'212'254'719, 90, 90, 1},
      {20'000'000'000, 0, 20'000'000'000, 1},
      {20'000'000'000, {}, 20'000'000'000, 1}};
  for (const auto& [free, important, expected, asked] : cases) {
    Machine m;
    m.machine.diskAnswer.free = free;
    m.machine.importantAnswer = important;
    EXPECT_EQ(m.scan().diskFree, expected) << free;
    EXPECT_EQ(m.machine.importantAsked, asked) << free;
  }
}

TEST(Scan, EveryAbsentSourceLeavesItsFieldNeutralAndNoOther) {
  static constexpr std::uint64_t absurd = (std::uint64_t{1} << 48U) + 1;
  const std::tuple<const char*, std::function<void(Machine&)>, std::function<void(Snapshot&)>> cases[] = {
      {"ticks", [](Machine& m) { m.machine.ticks.clear(); }, [](Snapshot& s) { s.cpuBusy = 0; }},
      {"heat", [](Machine& m) { m.machine.thermalAnswer = {}; }, [](Snapshot& s) { s.thermal = {}; }},
      {"pressure", [](Machine& m) { m.machine.pressureAnswer = {}; }, [](Snapshot& s) { s.pressure = 1; }},
      {"absurd ram", [](Machine& m) { m.machine.ramAnswer = absurd; }, [](Snapshot& s) { s.ram = 0; }},
      {"absurd swap", [](Machine& m) { m.machine.swapAnswer = absurd; }, [](Snapshot& s) { s.swapUsed = 0; }},
      {"boot time", [](Machine& m) { m.machine.bootAnswer = {}; }, [](Snapshot& s) { s.uptime = 0; }},
      {"boot to come", [](Machine& m) { m.machine.bootAnswer = 2'000'000'000; },
       [](Snapshot& s) { s.uptime = 0; }},
      {"disk", [](Machine& m) { m.machine.diskAnswer = {}, m.machine.importantAnswer = {}; },
       [](Snapshot& s) { s.diskFree = s.diskTotal = 0; }},
      {"processes", [](Machine& m) { m.process.processes.clear(); }, [](Snapshot& s) { s.procs.clear(); }}};
  for (const auto& [source, remove, neutralise] : cases) {
    Machine whole;
    Machine poorer;
    whole.process.secondLook = poorer.process.secondLook = 0;
    remove(poorer);
    Snapshot expected = whole.scan();
    const auto before = counters(expected);
    neutralise(expected);
    EXPECT_NE(counters(expected), before) << source;
    const Snapshot poor = poorer.scan();
    EXPECT_EQ(counters(poor), counters(expected)) << source;
    EXPECT_EQ(wasSeen(poor), poor.ram > 0 && !poor.procs.empty()) << source;
  }
}

TEST(Scan, MarksItsPhasesInOrder) {
  Machine m;
  m.scan();
  EXPECT_EQ(m.marks.take(), std::nullopt);
  m.marks.arm();
  m.scan();
  EXPECT_THAT(m.marks.take().value(),
              ElementsAre(BenchMark{"start", 1}, BenchMark{"first pass", 2}, BenchMark{"process scan", 3},
                          BenchMark{"docker", 4}, BenchMark{"system and apps", 5}, BenchMark{"tabs", 6}));
}

std::string settings(const std::string& state) {
  return R"({"a": 1, "performance_tuning": {"high_efficiency_mode": {"state": )" + state + "}}}";
}

TEST(MemorySaver, OnlyAnIntegerInItsOwnPlaceCounts) {
  for (const int whole : {0, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
    EXPECT_EQ(memorySaverState(settings(std::to_string(whole))), whole);
  const char* last =
      R"({"x":[{"performance_tuning":1}],"performance_tuning":{"high_efficiency_mode":{"state":1,"state":2}}})";
  EXPECT_EQ(memorySaverState(last), 2);
  for (const char* state : {"2147483648", "-2147483649", "\"2\"", "2.0", "true", "null", "2x"})
    EXPECT_EQ(memorySaverState(settings(state)), std::nullopt) << state;
  for (const std::string& text :
       Strings{std::string(100'000, '['), "[]", "\xff\xfe{", "",
               R"([{"performance_tuning":{"high_efficiency_mode":{"state":1}}}])",
               R"({"performance_tuning":[{"high_efficiency_mode":{"state":1}}]})",
               R"({"performance_tuning":{"high_efficiency_mode":{"state":1}},"performance_tuning":{}})",
               R"({"performance_tuning":{"high_efficiency_mode":{"state":1},"high_efficiency_mode":3}})",
               R"({"performance_tuning":{"high_efficiency_mode":{"x":{"state":1}}}})"})
    EXPECT_EQ(memorySaverState(text), std::nullopt) << text.substr(0, 99);
}

TEST(MemorySaver, IsReadFromSettingsOfAtMostFourMebibytesWhileChromeRuns) {
  Machine m;
  m.workspace.apps = {{9, "Google Chrome", chrome, "/chrome", false}};
  EXPECT_EQ(m.scan().memorySaver, std::nullopt) << "no file";
  std::string text = settings("2");
  for (const auto& [size, state] : {std::pair{(4U << 20U) + 1, std::optional<int>()}, {4U << 20U, 2}}) {
    text.resize(size, ' ');
    m.home.write("Library/Application Support/Google/Chrome/Local State", text);
    EXPECT_EQ(m.scan().memorySaver, state) << size;
  }
  m.workspace.apps.front().bundleID += ".canary";
  EXPECT_EQ(m.scan().memorySaver, std::nullopt);
}

TEST(Scan, OfVeryManyContainersTheBiggestAreListed) {
  Snapshot snapshot;
  for (std::uint64_t i = 0; i < 600; ++i)
    snapshot.containers.push_back({.id = std::to_string(i), .mem = i == 599 ? 7 : i / 2});
  listBiggest(snapshot);
  ASSERT_THAT(snapshot.containers, SizeIs(512));
  EXPECT_EQ(snapshot.containers.front().id + " " + snapshot.containers.back().id, "86 598");
  // 0 to 42 twice, the second 43, and the 7.
  EXPECT_EQ(snapshot.moreContainers, (UnlistedContainers{88, 42 * 43 + 43 + 7}));
  listBiggest(snapshot);
  EXPECT_EQ(snapshot.moreContainers.count, 88);
  constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
  snapshot.containers.assign(514, {.mem = most});
  listBiggest(snapshot);
  EXPECT_EQ(snapshot.moreContainers.bytes, most);
}

TEST(ScanCaches, TheEngineIsAskedOnceInSixtySecondsAndForgottenAtOnceWhenItQuits) {
  Machine m;
  m.dockerRuns = true;
  using Seen = std::pair<std::size_t, std::ptrdiff_t>;  // containers, lists asked for so far
  const auto after = [&](double seconds) -> Seen {
    const std::size_t containers = m.scanAfter(seconds).containers.size();
    return {containers, std::ranges::count_if(m.engine.asked(), [](const auto& asked) {
              return asked.request.starts_with("GET /containers/json ");
            })};
  };
  const auto reply = m.engine.replies;
  EXPECT_EQ(after(0), Seen(1, 1));
  m.engine.replies.clear();  // from now on an asked engine has nothing to say
  EXPECT_EQ(after(60), Seen(1, 1)) << "exactly 60 s old is not more than 60 s";
  EXPECT_EQ(after(0.5), Seen(0, 2));
  EXPECT_EQ(after(10), Seen(0, 2)) << "an empty answer is an answer too";
  m.driver.resetCaches();
  EXPECT_EQ(after(0), Seen(0, 3));
  EXPECT_EQ(after(-100), Seen(0, 4)) << "a clock that was set back does not freeze the answer";
  m.engine.replies = reply;
  EXPECT_EQ(after(61), Seen(1, 5));
  m.dockerRuns = false;
  EXPECT_EQ(after(1), Seen(0, 5));
  m.dockerRuns = true;
  EXPECT_EQ(after(1), Seen(1, 6)) << "and not from memory";
}

TEST(ScanCaches, BrowsersAreAskedForPermissionAndThenOnceInThirtySecondsForTabs) {
  for (const bool readable : {true, false}) {  // failed reads are kept too
    Machine m;
    for (const char* id : {firefox, chrome, safari})
      m.workspace.apps.push_back({1, "Browser", id, "/b", false});
    if (!readable) m.browsers.tabs.clear();
    const std::map<std::string, Tabs> read = m.browsers.tabs;
    const Snapshot first = m.scanAfter(0);
    EXPECT_THAT(first.access, ElementsAre(Pair(safari, Access::allowed), Pair(chrome, Access::denied)))
        << "Firefox cannot be scripted, others do not run";
    EXPECT_EQ(first.tabs, read);
    EXPECT_EQ(m.scanAfter(29.5).tabs, read);
    EXPECT_EQ(m.browsers.tabsRead, 1);
    EXPECT_EQ(m.scanAfter(0.5).tabs, read);
    EXPECT_EQ(m.browsers.tabsRead, 2) << "30 s old is no longer younger than 30 s";
    m.driver.resetCaches();
    m.scanAfter(1);
    EXPECT_EQ(m.browsers.tabsRead, 3);
    m.browsers.permissions[safari] = Access::notAsked;
    EXPECT_THAT(m.scanAfter(1).tabs, IsEmpty()) << "what was read before the permission went is not shown";
  }
}

}  // namespace
