// A forgotten server in a folder of a file system that stopped answering: a real one, of both kinds.
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "app/machine.h"
#include "system/posix/descriptor.h"
#include "tests/support/fake_clock.h"
#include "tests/support/linux/fuse_mount.h"
#include "tests/support/posix/child_process.h"
#include "tests/support/posix/git_world.h"

namespace {

struct ClockAhead : SystemClock {
  Timestamp now() override { return SystemClock::now() + Seconds{13 * 3'600}; }
};

// A server that listens in `folder` on a port of the system's choice.
struct Server {
  explicit Server(const std::string& folder) {
    const Descriptor listener(::socket(AF_INET, SOCK_STREAM, 0));
    sockaddr_in address{.sin_family = AF_INET, .sin_addr = {htonl(INADDR_LOOPBACK)}};
    socklen_t length = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(listener.number(), generic, length) != 0 || ::listen(listener.number(), 1) != 0 ||
        ::getsockname(listener.number(), generic, &length) != 0)
      fault("no port");
    port = ntohs(address.sin_port);
    child.emplace([&] {
      if (::chdir(folder.c_str()) != 0) ::_exit(1);
    });
  }

  int port = 0;
  std::optional<ChildProcess> child;
};

// A fifth more than the longest time that a check may take.
constexpr double generous = 10;

struct HangingMount : testing::TestWithParam<FuseMount::Kind> {
  void SetUp() override {
    if (::geteuid() != 0) GTEST_SKIP() << "mounting takes root";
    std::filesystem::create_directory(dead);
    mount.emplace(dead, GetParam());
    if (!mount->isMounted()) GTEST_SKIP() << "no file system of one's own can be mounted here";
  }

  GitWorld world;
  const std::string dead = world.folder.at("dead");
  std::optional<FuseMount> mount;
  SystemClock now;
  PosixToolRunner tools;
};

TEST_P(HangingMount, CostsItsOwnAnswersAndNothingElse) {
  const std::string home = world.folder.path();
  const std::string shop = world.repository("shop", "Add the cart");
  const Server lost(dead);
  const Server alive(shop);
  std::filesystem::create_directories(world.folder.at(".local/share/applications"));
  std::filesystem::create_symlink(dead + "/x", world.folder.at(".local/share/applications/x.desktop"));
  mount->die(3 * generous);

  ClockAhead clock;
  RealOutside real(Self{::getpid(), ::getuid(), home}, TARNWICK_PROGRAM);
  const Outside here = real.parts();
  Machine machine({here.self,
                   here.settings,
                   clock,
                   here.limits,
                   here.files,
                   here.homeFiles,
                   here.tools,
                   here.toolCandidates,
                   here.transport,
                   {},
                   here.sources,
                   here.browsers,
                   here.targets},
                  PrTitles::never);
  int swallowed = 0;
  for (const char* time : {"the first time", "the second time"}) {
    const double before = now.uptime();
    const Check check = machine.check({});
    EXPECT_LT(clock.uptime() - before, generous) << time;
    EXPECT_THAT(check.leftOut, ElementsAre(dead)) << time;
    std::map<std::string, std::string> cards;
    for (const Finding& finding : check.found) cards[finding.id] = finding.detail;
    EXPECT_THAT(cards["stack:" + shop], HasSubstr("“Add the cart”")) << time;
    EXPECT_THAT(cards["stack:" + dead], HasSubstr("(port " + std::to_string(lost.port) + ")")) << time;
    if (swallowed == 0) swallowed = mount->swallowed();
    EXPECT_EQ(mount->swallowed(), swallowed) << "nobody is sent there again";
  }
}

TEST_P(HangingMount, AsAHomeThatDiesLaterHoldsNeitherChecksNorSettingsUp) {
  RealOutside real[] = {{Self{::getpid(), ::getuid(), dead}, TARNWICK_PROGRAM},
                        {Self{::getpid(), ::getuid(), dead}, TARNWICK_PROGRAM}};
  Machine machines[] = {{real[0].parts(), PrTitles::whenChosen}, {real[1].parts(), PrTitles::whenChosen}};
  machines[0].check({});  // the other one finds it dead at its first
  mount->die(5 * generous);
  for (int i : {0, 1}) {
    const double before = now.uptime();
    EXPECT_THAT(machines[i].check({}).leftOut, ElementsAre(dead));
    UserSettings& settings = real[i].parts().settings;
    EXPECT_FALSE(settings.opensAtLogin() || settings.prTitles());
    settings.setPrTitles(true);
    EXPECT_LT(now.uptime() - before, generous);
  }
}

TEST_P(HangingMount, IsLeftAloneForFiveMinutes) {
  mount->die(2 * generous);
  FakeClock clock;
  CheckLimits limits(clock);
  GuardedFiles files(TARNWICK_PROGRAM, clock, limits);
  EXPECT_FALSE(files.isDirectory(dead + "/other") || files.mayVisit(dead));
  clock.turn(299);
  EXPECT_FALSE(files.mayVisit(dead));
  clock.turn(1);
  EXPECT_TRUE(files.mayVisit(dead));
}

TEST_P(HangingMount, AsAHomeFolderLeavesTheRestOfTheReport) {
  const std::string link = world.folder.at("link");
  std::filesystem::create_symlink(dead, link);
  mount->die(5 * generous);
  double before = now.uptime();
  EXPECT_TRUE(tools.start("/bin/ls", {dead + "/x"}, {.seconds = 0.2})->result().late);
  EXPECT_LT(now.uptime() - before, generous) << "whoever sent a tool there is not held";
  const std::string leftOut = "tarnwick: left out, because it did not answer in time: " + dead + ".\n";
  for (const std::string& home : {dead + "/me", link}) {
    before = now.uptime();
    const auto tool = tools.start("/bin/sh", {"-c", "\"$0\" --print 2>&1 >/dev/null", TARNWICK_PROGRAM},
                                  {.addedVariables = {{"HOME", home}}, .seconds = 2 * generous});
    EXPECT_EQ(tool->result().output, leftOut) << home;
    EXPECT_LT(now.uptime() - before, generous);
  }
}

INSTANTIATE_TEST_SUITE_P(OfBothKinds, HangingMount,
                         testing::Values(FuseMount::Kind::stopped, FuseMount::Kind::swallowing));

}  // namespace
