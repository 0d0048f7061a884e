#include "sampling/process_table.h"

#include "tests/support/fake_process_source.h"

namespace {

constexpr std::int64_t started = 1'000'000;

FakeProcess server() {
  return {.facts = ProcessFacts{1, 501, started},
          .usage = ProcessUsage{300, 400, 50},
          .firstTime = 20,
          .path = "/usr/bin/node",
          .args = {"node", "server.js"},
          .cwd = "/home/ada/shop",
          .ports = {3000, 9229}};
}

auto all(const Proc& p) {
  return std::tuple(p.pid, p.ppid, p.uid, p.path, p.args, p.started, p.footprint, p.resident, p.cpu, p.cwd,
                    p.ports, p.app);
}

struct ProcessTableTest : testing::Test {
  // The one process of a second pass at `age` seconds after its start.
  Proc read(double age = 60) {
    auto procs = table.secondPass(timestamp(static_cast<double>(started) + age));
    return procs.contains(7) ? procs[7] : Proc{};
  }

  FakeProcessSource source;
  ProcessTable table{source};
};

// Of the texts 8 MiB for all; past them 512 bytes for each, of which every argument takes 32 and what it
// holds.
TEST_F(ProcessTableTest, AUserWithVeryManyProcessesSeesTheFirstAndTheirTextsUpToALongestLength) {
  for (Pid pid = 1; pid <= 8'194; ++pid) {
    source.processes[pid] = server();
    source.processes[pid].args = {"node", std::string(200, 'x'), std::string(2'000, 'x'), "last"};
    source.processes[pid].cwd = std::string(600, '/');
  }
  source.processes[1].facts.reset();
  for (int look = 0; look < 2; ++look) {
    const auto procs = table.secondPass(timestamp(0));
    EXPECT_EQ(procs.size(), 8'192U);
    std::size_t bytes = 0;
    for (const auto& [pid, proc] : procs)
      for (const std::string& arg : proc.args) bytes += arg.size() + 32;
    EXPECT_LE(bytes, (8'192U + 4'096U) << 10U);
    EXPECT_THAT(procs.at(2).args, SizeIs(4));
    EXPECT_THAT(procs.at(8'193).args, ElementsAre("node", SizeIs(200)));
    EXPECT_EQ(procs.at(8'193).cwd, "");
  }
}

TEST_F(ProcessTableTest, AsksInOrderAndFillsEveryField) {
  source.processes[7] = server();
  source.wall = 1'000;
  table.firstPass();
  EXPECT_THAT(source.asked, ElementsAre("begin", "time 7"));
  source.asked.clear();
  source.wall = 1'020;
  EXPECT_EQ(all(read(43'200.001)), all({.pid = 7,
                                        .ppid = 1,
                                        .uid = 501,
                                        .path = "/usr/bin/node",
                                        .args = {"node", "server.js"},
                                        .started = timestamp(started),
                                        .footprint = 300,
                                        .resident = 400,
                                        .cpu = 1.5,
                                        .cwd = "/home/ada/shop",
                                        .ports = {3000, 9229}}));
  EXPECT_THAT(source.asked, ElementsAre("begin", "facts 7", "path 7", "app of /usr/bin/node 7", "args 7",
                                        "usage 7", "cwd 7", "ports 7"));
  EXPECT_THAT(read(43'200).ports, IsEmpty()) << "only after twelve hours";
}

TEST_F(ProcessTableTest, WhatNoMachineHasIsNotBelieved) {
  constexpr std::uint64_t most = std::uint64_t{1} << 48U;
  source.processes[7] = server();
  for (const std::uint64_t beyond : {0U, 1U}) {
    source.processes[7].usage = ProcessUsage{most + beyond, most + 1 - beyond, 50};
    EXPECT_EQ(std::pair(read().footprint, read().resident),
              beyond == 0 ? std::pair(most, 0UL) : std::pair(0UL, most));
    source.strangers[90] = {.uid = 33, .resident = most + beyond};
    source.strangersMemory[90] = most + 1 - beyond;
    read();
    const OtherProc other = table.others(true).at(0);
    EXPECT_EQ(std::pair(other.footprint.value_or(0), other.resident),
              beyond == 0 ? std::pair(0UL, most) : std::pair(most, 0UL));
  }
}

TEST_F(ProcessTableTest, InsideAnApplicationNothingPersonalIsAsked) {
  source.processes[7] = server();
  source.processes[7].app = "Notes";
  for (int check = 0; check < 2; ++check) EXPECT_EQ(read(1e9).app, "Notes") << "the second time from memory";
  EXPECT_THAT(source.asked, ElementsAre("begin", "facts 7", "path 7", "app of /usr/bin/node 7", "usage 7",
                                        "begin", "facts 7", "usage 7"));
}

TEST_F(ProcessTableTest, SameStartIsAskedOnceAndAnotherStartAfresh) {
  source.processes[7] = server();
  read();
  source.asked.clear();
  FakeProcess& process = source.processes[7];
  process = {ProcessFacts{5, 501, started}, process.usage, 20, "/usr/bin/other", {}, {"other"}, "/elsewhere"};
  Proc proc = read();
  EXPECT_THAT(source.asked, ElementsAre("begin", "facts 7", "usage 7", "cwd 7"));
  EXPECT_EQ(std::tie(proc.path, proc.ppid, proc.cwd, proc.args),
            std::tuple("/usr/bin/node", 5, "/elsewhere", Strings{"node", "server.js"}));
  process.facts->started = started + 1;
  proc = read();
  EXPECT_EQ(std::tie(proc.path, proc.args), std::tuple("/usr/bin/other", Strings{"other"}));
}

TEST_F(ProcessTableTest, ExitedProcessesAreForgotten) {
  for (const bool listed : {false, true}) {  // it can be listed and not be read
    source.processes[7] = server();
    read();
    source.processes[7].facts.reset();
    if (!listed) source.processes.clear();
    EXPECT_EQ(read().pid, 0);
    source.processes[7] = server();
    source.asked.clear();
    read();
    EXPECT_THAT(source.asked, Contains("path 7"));
  }
  source.processes[7].usage.reset();
  EXPECT_EQ(read().path, "/usr/bin/node") << "recorded without its usage";
}

TEST_F(ProcessTableTest, ProcessorUseNeedsAnIntervalAndTwoTimesInOrder) {
  using Time = std::optional<std::uint64_t>;
  const std::tuple<const char*, Time, std::uint64_t, std::uint64_t, double> cases[] = {
      {"half a core", 100, 150, 1'100, 0.5},
      {"started meanwhile", {}, 150, 1'100, 0},
      {"time went backwards", 100, 99, 1'100, 0},
      {"no interval", 100, 150, 1'000, 0},
      {"wall went backwards", 100, 150, 999, 0}};
  for (const auto& [what, first, second, wallAfter, cpu] : cases) {
    FakeProcess& process = source.processes[7] = server();
    process.firstTime = first;
    process.usage->processorTime = second;
    source.wall = 1'000;
    table.firstPass();
    source.wall = wallAfter;
    EXPECT_DOUBLE_EQ(read().cpu, cpu) << what;
  }
}

// Workers on one segment: each has a quarter of what it holds if the rest is shared out.
TEST_F(ProcessTableTest, SharedMemoryIsCountedOnceWhereTheSumIsBig) {
  // Workers, the mebibytes of each, and whether they listen for more than 12 hours.
  const std::tuple<const char*, int, std::uint64_t, bool, bool> cases[] = {
      {"big", 8, 200, false, true},    {"one alone shares with nobody", 1, 2'000, false, false},
      {"small", 2, 127, false, false}, {"just big", 2, 128, false, true},
      {"server", 2, 16, true, true},   {"small server", 2, 15, true, false},
      {"many", 1'000, 1, false, true}};
  for (const auto& [what, workers, mebibytes, old, asked] : cases) {
    source.processes.clear();
    source.asked.clear();
    const std::uint64_t each = mebibytes << 20U;
    for (Pid pid = 100; pid < 100 + workers; ++pid) {
      source.processes[pid] = server();
      source.processes[pid].usage->footprint = each;
      source.processes[pid].share = each / 4;
    }
    source.processes[7] = {server().facts, ProcessUsage{4'000ULL << 20U, 0, 0}, 0,
                           "/usr/bin/bigger and alone"};
    const auto procs = table.secondPass(timestamp(static_cast<double>(started) + (old ? 50'000 : 60)));
    for (Pid pid = 100; pid < 100 + workers; ++pid)
      EXPECT_EQ(procs.at(pid).footprint, asked ? each / 4 : each) << what;
    EXPECT_EQ(std::ranges::count(source.asked, "share 100"), asked) << what;
    EXPECT_THAT(source.asked, Not(Contains("share 7"))) << what;
  }
}

TEST_F(ProcessTableTest, ForOneCheckNothingIsKeptAndTheSameIsSaid) {
  for (const Pid pid : {7, 8, 9}) {
    source.processes[pid] = server();
    source.processes[pid].usage->footprint = std::uint64_t{300} << 20U;
    source.processes[pid].share = 500;
  }
  source.processes[9].app = "Notes";
  const auto kept = table.secondPass(timestamp(started + 60));
  EXPECT_EQ(kept.at(8).footprint, 500U);
  ProcessTable once(source, Checks::one);
  for (int check = 0; check < 2; ++check) {
    source.asked.clear();
    const auto procs = once.secondPass(timestamp(started + 60));
    for (const Pid pid : {8, 9}) EXPECT_EQ(all(procs.at(pid)), all(kept.at(pid)));
    EXPECT_EQ(std::ranges::count(source.asked, "args 8"), 1);
  }
}

TEST_F(ProcessTableTest, AShareIsAskedAgainAfterAMinuteOrWhenTheProcessChanged) {
  constexpr std::uint64_t mebibyte = std::uint64_t{1} << 20U;
  for (const Pid pid : {7, 8}) {
    source.processes[pid] = server();
    source.processes[pid].usage->footprint = 1'600 * mebibyte;
    source.processes[pid].share = 900 * mebibyte;
  }
  FakeProcess& seven = source.processes[7];
  using Seen = std::pair<std::uint64_t, std::ptrdiff_t>;  // mebibytes, times asked
  const auto look = [&](double age, std::uint64_t footprint) {
    source.asked.clear();
    seven.usage->footprint = footprint * mebibyte;
    const std::uint64_t found = read(age).footprint / mebibyte;
    return Seen(found, std::ranges::count(source.asked, "share 7"));
  };
  EXPECT_EQ(look(60, 1'600), Seen(900, 1));
  EXPECT_EQ(look(120, 1'600), Seen(900, 0));
  EXPECT_EQ(look(120, 1'650), Seen(950, 0)) << "what is new is its own";
  EXPECT_EQ(look(121, 1'600), Seen(900, 1)) << "more than a minute";
  EXPECT_EQ(look(100, 1'600), Seen(900, 1)) << "the clock was set back";
  EXPECT_EQ(look(100, 2'000), Seen(900, 1)) << "grew";
  seven.share.reset();
  EXPECT_EQ(look(100, 1'000), Seen(1'000, 1)) << "cannot be read";
  seven.share = 5'000 * mebibyte;
  EXPECT_EQ(look(200, 1'000), Seen(1'000, 1)) << "never more than everything";
}

// The second process is looked at late each time, as where the passes starve. Both are busy all the time.
TEST_F(ProcessTableTest, EachProcessHasTheIntervalBetweenItsOwnTwoLooks) {
  FakeClock clock;
  source.clock = &clock;  // a thousand units a second
  clock.up = 0;
  source.firstLook = 2;
  source.secondLook = 3;
  for (const Pid pid : {7, 8}) source.processes[pid] = server();
  source.processes[7].firstTime = 2'000;  // looked at from 0 to 2
  source.processes[8].firstTime = 4'000;  // from 2 to 4
  table.firstPass();
  source.processes[7].usage->processorTime = 7'000;   // until 7
  source.processes[8].usage->processorTime = 10'000;  // until 10
  const auto procs = table.secondPass(timestamp(0));
  EXPECT_DOUBLE_EQ(procs.at(7).cpu, 5.0 / 7);
  EXPECT_DOUBLE_EQ(procs.at(8).cpu, 6.0 / 8) << "never above 1";
}

}  // namespace
