#include "sampling/process_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/fake_process_source.h"

namespace tarnwick {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr std::int64_t started = 1'000'000;

FakeProcess server() {
  FakeProcess process;
  process.facts = ProcessFacts{1, 501, started};
  process.usage = ProcessUsage{300, 400, 50};
  process.firstTime = 20;
  process.path = "/usr/bin/node";
  process.args = {"node", "server.js"};
  process.cwd = "/home/ada/shop";
  process.ports = {3000, 9229};
  return process;
}

class ProcessTableTest : public testing::Test {
 protected:
  // The one process of a second pass at `age` seconds after its start.
  Proc read(double age = 60) {
    auto procs = table.secondPass(timestamp(static_cast<double>(started) + age));
    return procs.contains(7) ? procs[7] : Proc{};
  }

  FakeProcessSource source;
  ProcessTable table{source};
};

TEST_F(ProcessTableTest, AUserWithVeryManyProcessesSeesTheFirst) {
  for (Pid pid = 1; pid <= 8'194; ++pid) source.processes[pid] = server();
  source.processes[1].facts.reset();
  const auto procs = table.secondPass(timestamp(0));
  EXPECT_EQ(procs.size(), 8'192U);
  EXPECT_TRUE(procs.contains(8'193));
}

TEST_F(ProcessTableTest, AsksInOrderAndFillsEveryField) {
  source.processes[7] = server();
  source.wall = 1'000;
  table.firstPass();
  EXPECT_THAT(source.asked, ElementsAre("begin", "time 7"));
  source.asked.clear();
  source.wall = 1'020;
  const Proc proc = read(43'201);
  EXPECT_THAT(source.asked, ElementsAre("begin", "facts 7", "path 7", "app of /usr/bin/node 7", "args 7",
                                        "usage 7", "cwd 7", "ports 7"));
  EXPECT_EQ(proc.pid, 7);
  EXPECT_EQ(proc.ppid, 1);
  EXPECT_EQ(proc.uid, 501U);
  EXPECT_EQ(proc.path, "/usr/bin/node");
  EXPECT_THAT(proc.args, ElementsAre("node", "server.js"));
  EXPECT_EQ(proc.started, timestamp(started));
  EXPECT_EQ(proc.footprint, 300U);
  EXPECT_EQ(proc.resident, 400U);
  EXPECT_DOUBLE_EQ(proc.cpu, 1.5);
  EXPECT_EQ(proc.cwd, "/home/ada/shop");
  EXPECT_THAT(proc.ports, ElementsAre(3000, 9229));
  EXPECT_EQ(proc.app, std::nullopt);
}

TEST_F(ProcessTableTest, InsideAnApplicationNothingPersonalIsAsked) {
  source.processes[7] = server();
  source.processes[7].app = "Notes";
  const Proc proc = read(1e9);
  EXPECT_THAT(source.asked, ElementsAre("begin", "facts 7", "path 7", "app of /usr/bin/node 7", "usage 7"));
  EXPECT_EQ(proc.app, "Notes");
  EXPECT_THAT(proc.args, IsEmpty());
  // Neither when the application is known from an earlier check.
  source.asked.clear();
  EXPECT_EQ(read(1e9).app, "Notes");
  EXPECT_THAT(source.asked, ElementsAre("begin", "facts 7", "usage 7"));
}

TEST_F(ProcessTableTest, PortsOnlyAfterTwelveHours) {
  source.processes[7] = server();
  EXPECT_THAT(read(43'200).ports, IsEmpty());
  EXPECT_THAT(source.asked, Not(Contains("ports 7")));
  EXPECT_THAT(read(43'200.001).ports, ElementsAre(3000, 9229));
}

TEST_F(ProcessTableTest, SameStartIsAskedOnceAndAnotherStartAfresh) {
  source.processes[7] = server();
  read();
  source.asked.clear();
  source.processes[7].path = "/usr/bin/other";
  source.processes[7].args = {"other"};
  source.processes[7].facts->ppid = 5;
  source.processes[7].cwd = "/elsewhere";
  Proc proc = read();
  EXPECT_THAT(source.asked, ElementsAre("begin", "facts 7", "usage 7", "cwd 7"));
  EXPECT_EQ(proc.path, "/usr/bin/node");
  EXPECT_THAT(proc.args, ElementsAre("node", "server.js"));
  EXPECT_EQ(proc.ppid, 5);
  EXPECT_EQ(proc.cwd, "/elsewhere");

  source.processes[7].facts->started = started + 1;
  proc = read();
  EXPECT_EQ(proc.path, "/usr/bin/other");
  EXPECT_THAT(proc.args, ElementsAre("other"));
}

TEST_F(ProcessTableTest, ExitedProcessesAreForgotten) {
  source.processes[7] = server();
  read();
  source.processes.clear();
  EXPECT_EQ(read().pid, 0);
  source.processes[7] = server();
  source.asked.clear();
  read();
  EXPECT_THAT(source.asked, Contains("path 7"));
  // Also when it was listed but could not be read.
  source.processes[7].facts.reset();
  EXPECT_EQ(read().pid, 0);
  source.processes[7] = server();
  source.asked.clear();
  read();
  EXPECT_THAT(source.asked, Contains("args 7"));
}

TEST_F(ProcessTableTest, WithoutUsageTheProcessIsStillRecorded) {
  source.processes[7] = server();
  table.firstPass();
  source.wall = 10;
  source.processes[7].usage.reset();
  const Proc proc = read();
  EXPECT_EQ(proc.path, "/usr/bin/node");
  EXPECT_EQ(proc.footprint, 0U);
  EXPECT_EQ(proc.resident, 0U);
  EXPECT_EQ(proc.cpu, 0);
}

TEST_F(ProcessTableTest, ProcessorUseNeedsAnIntervalAndTwoTimesInOrder) {
  struct Case {
    const char* what = "";
    std::optional<std::uint64_t> first;
    std::uint64_t second = 0, wallBefore = 0, wallAfter = 0;
    double cpu = 0;
  };
  const Case cases[] = {
      {"half a core", 100, 150, 1'000, 1'100, 0.5},
      {"many threads", 100, 1'100, 1'000, 1'100, 10},
      {"idle", 100, 100, 1'000, 1'100, 0},
      {"started meanwhile", std::nullopt, 150, 1'000, 1'100, 0},
      {"time went backwards", 100, 99, 1'000, 1'100, 0},
      {"no interval", 100, 150, 1'000, 1'000, 0},
      {"wall went backwards", 100, 150, 1'000, 999, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    source.processes[7] = server();
    source.processes[7].firstTime = c.first;
    source.processes[7].usage->processorTime = c.second;
    source.wall = c.wallBefore;
    table.firstPass();
    source.wall = c.wallAfter;
    EXPECT_DOUBLE_EQ(read().cpu, c.cpu);
  }
}

}  // namespace
}  // namespace tarnwick
