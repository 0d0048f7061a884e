// A forgotten server in a folder of a file system that stopped answering: a real one, of both kinds.
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "app/machine.h"
#include "tests/support/linux/fuse_mount.h"
#include "tests/support/posix/git_world.h"

namespace tarnwick {
namespace {

struct ClockAhead : SystemClock {
  Timestamp now() override { return SystemClock::now() + Seconds{13 * 3'600}; }
};

// A server that lost its starter: it listens in `folder` on a port of the system's choice.
class OrphanServer {
 public:
  explicit OrphanServer(const std::string& folder) {
    std::array<int, 2> channel{};
    if (::pipe(channel.data()) != 0) return;
    const pid_t starter = ::fork();
    if (starter == 0) {
      if (::fork() == 0) serve(folder, channel[1]);
      ::_exit(0);
    }
    ::waitpid(starter, nullptr, 0);
    if (::read(channel[0], &facts_, sizeof facts_) != static_cast<ssize_t>(sizeof facts_)) facts_ = {};
    for (const int end : channel) ::close(end);
  }
  ~OrphanServer() {
    if (facts_.pid > 1) ::kill(facts_.pid, SIGKILL);
  }
  OrphanServer(const OrphanServer&) = delete;
  OrphanServer& operator=(const OrphanServer&) = delete;

  Pid pid() const { return facts_.pid; }
  int port() const { return facts_.port; }

 private:
  struct Facts {
    Pid pid = 0;
    int port = 0;
  };

  [[noreturn]] static void serve(const std::string& folder, int report) {
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    const bool listens = ::chdir(folder.c_str()) == 0 && ::bind(listener, generic, length) == 0 &&
                         ::listen(listener, 1) == 0 && ::getsockname(listener, generic, &length) == 0;
    const Facts facts{::getpid(), listens ? ntohs(address.sin_port) : 0};
    if (::write(report, &facts, sizeof facts) < 0) ::_exit(1);
    while (true) ::pause();
  }

  Facts facts_;
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
  const OrphanServer lost(dead);
  const OrphanServer alive(shop);
  ASSERT_TRUE(lost.port() > 0 && alive.port() > 0);
  std::filesystem::create_directories(world.folder.at(".local/share/applications"));
  std::filesystem::create_symlink(dead + "/x", world.folder.at(".local/share/applications/x.desktop"));
  mount->die(3 * generous);

  ClockAhead clock;
  RealOutside real(Self{::getpid(), ::getuid(), home}, TARNWICK_PROGRAM);
  const Outside here = real.parts();
  Machine machine({.self = here.self,
                   .settings = here.settings,
                   .clock = clock,
                   .limits = here.limits,
                   .files = here.files,
                   .homeFiles = here.homeFiles,
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
    const double before = now.uptime();
    const Check check = machine.check({});
    EXPECT_LT(clock.uptime() - before, generous) << time;
    EXPECT_THAT(check.leftOut, ElementsAre(dead)) << time;
    std::map<std::string, std::string> cards;
    for (const Finding& finding : check.found) cards[finding.id] = finding.detail;
    EXPECT_THAT(cards["stack:" + shop], HasSubstr("“Add the cart”")) << time;
    EXPECT_THAT(cards["stack:" + dead], HasSubstr("(port " + std::to_string(lost.port()) + ")")) << time;
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

TEST_P(HangingMount, DoesNotHoldWhoeverSentAToolThere) {
  mount->die(2 * generous);
  const double before = now.uptime();
  const auto tool = tools.start("/bin/ls", {dead + "/x"}, {.seconds = 0.2});
  ASSERT_NE(tool, nullptr);
  EXPECT_TRUE(tool->result().late);
  EXPECT_LT(now.uptime() - before, generous);
}

TEST_P(HangingMount, AsAHomeFolderLeavesTheRestOfTheReport) {
  const std::string link = world.folder.at("link");
  std::filesystem::create_symlink(dead, link);
  mount->die(4 * generous);
  const std::string leftOut = "tarnwick: left out, because it did not answer in time: " + dead + ".\n";
  for (const std::string& home : {dead + "/me", link}) {
    const double before = now.uptime();
    const auto tool = tools.start("/bin/sh", {"-c", "\"$0\" --print 2>&1 >/dev/null", TARNWICK_PROGRAM},
                                  {.addedVariables = {{"HOME", home}}, .seconds = 2 * generous});
    ASSERT_NE(tool, nullptr);
    const ToolResult result = tool->result();
    EXPECT_EQ(std::tuple(result.output, result.exitStatus), std::tuple(leftOut, 0)) << home;
    EXPECT_LT(now.uptime() - before, generous);
  }
}

INSTANTIATE_TEST_SUITE_P(OfBothKinds, HangingMount,
                         testing::Values(FuseMount::Kind::stopped, FuseMount::Kind::swallowing));

}  // namespace
}  // namespace tarnwick
