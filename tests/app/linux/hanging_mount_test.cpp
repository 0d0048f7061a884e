// A forgotten server in a folder of a file system that stopped answering: a real one, of both kinds.
#include <unistd.h>

#include "app/machine.h"
#include "tests/support/linux/fuse_mount.h"
#include "tests/support/posix/git_world.h"
#include "tests/support/posix/orphan_server.h"

namespace tarnwick {
namespace {

// A fifth more than the longest time that a check may take.
constexpr double generous = 10;

struct HangingMount : testing::TestWithParam<FuseMount::Kind> {};

TEST_P(HangingMount, CostsItsOwnAnswersAndNothingElse) {
  if (::geteuid() != 0) GTEST_SKIP() << "mounting takes root";
  GitWorld world;
  const std::string home = world.folder.path();
  const std::string shop = world.repository("shop", "Add the cart");
  const std::string dead = world.folder.at("dead");
  std::filesystem::create_directory(dead);
  FuseMount mount(dead, GetParam());
  if (!mount.isMounted()) GTEST_SKIP() << "no file system of one's own can be mounted here";
  const OrphanServer lost(dead);
  const OrphanServer alive(shop);
  ASSERT_TRUE(lost.port() > 0 && alive.port() > 0);
  mount.die(3 * generous);

  ClockAhead clock;
  RealOutside real(Self{::getpid(), ::getuid(), home}, TARNWICK_PROGRAM);
  const Outside here = real.parts();
  Machine machine({.self = here.self,
                   .settings = here.settings,
                   .clock = clock,
                   .limits = here.limits,
                   .files = here.files,
                   .tools = here.tools,
                   .toolCandidates = here.toolCandidates,
                   .transport = here.transport,
                   .engineSockets = {},
                   .sources = here.sources,
                   .browsers = here.browsers,
                   .targets = here.targets},
                  PrTitles::never);
  int swallowed = 0;
  for (const char* time : {"the first time", "the second time"}) {
    const double before = clock.uptime();
    const Check check = machine.check({});
    EXPECT_LT(clock.uptime() - before, generous) << time;
    EXPECT_THAT(check.leftOut, ElementsAre(dead)) << time;
    std::map<std::string, std::string> cards;
    for (const Finding& finding : check.found) cards[finding.id] = finding.detail;
    EXPECT_THAT(cards["stack:" + shop], HasSubstr("“Add the cart”")) << time;
    EXPECT_THAT(cards["stack:" + dead], HasSubstr("(port " + std::to_string(lost.port()) + ")")) << time;
    if (swallowed == 0) swallowed = mount.swallowed();
    EXPECT_EQ(mount.swallowed(), swallowed) << "nobody is sent there again";
  }
}

TEST_P(HangingMount, DoesNotHoldWhoeverSentAToolThere) {
  if (::geteuid() != 0) GTEST_SKIP() << "mounting takes root";
  const TempFolder folder;
  const std::string dead = folder.at("dead");
  std::filesystem::create_directory(dead);
  FuseMount mount(dead, GetParam());
  if (!mount.isMounted()) GTEST_SKIP() << "no file system of one's own can be mounted here";
  mount.die(2 * generous);
  SystemClock clock;
  const double before = clock.uptime();
  PosixToolRunner tools;
  const auto tool = tools.start("/bin/ls", {dead + "/x"}, {.seconds = 0.2});
  ASSERT_NE(tool, nullptr);
  EXPECT_TRUE(tool->result().late);
  EXPECT_LT(clock.uptime() - before, generous);
}

TEST_P(HangingMount, AsAHomeFolderLeavesTheRestOfTheReport) {
  if (::geteuid() != 0) GTEST_SKIP() << "mounting takes root";
  const TempFolder folder;
  const std::string dead = folder.at("dead");
  std::filesystem::create_directory(dead);
  std::filesystem::create_symlink(dead, folder.at("link"));
  FuseMount mount(dead, GetParam());
  if (!mount.isMounted()) GTEST_SKIP() << "no file system of one's own can be mounted here";
  mount.die(4 * generous);
  SystemClock clock;
  PosixToolRunner tools;
  const std::string leftOut = "tarnwick: left out, because it did not answer in time: " + dead + ".\n";
  for (const std::string& home : {dead + "/me", folder.at("link")}) {
    const double before = clock.uptime();
    const auto tool = tools.start("/bin/sh", {"-c", TARNWICK_PROGRAM " --print 2>&1 >/dev/null"},
                                  {.addedVariables = {{"HOME", home}}, .seconds = 2 * generous});
    ASSERT_NE(tool, nullptr);
    const ToolResult result = tool->result();
    EXPECT_EQ(std::tuple(result.output, result.exitStatus), std::tuple(leftOut, 0)) << home;
    EXPECT_LT(clock.uptime() - before, generous);
  }
}

INSTANTIATE_TEST_SUITE_P(OfBothKinds, HangingMount,
                         testing::Values(FuseMount::Kind::stopped, FuseMount::Kind::swallowing));

}  // namespace
}  // namespace tarnwick
