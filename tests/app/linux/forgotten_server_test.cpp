// From end to end on the live machine: a real server in a real repository, and a clock that is thirteen hours
// ahead, so that nobody has to wait until it is forgotten.
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "app/machine.h"
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

TEST(ForgottenServer, IsOneCardWithItsBranchItsCommitAndAStopThatWorks) {
  GitWorld world;
  const std::string home = world.folder.path();
  const std::string shop = world.repository("shop", "Add the cart");
  world.git(shop, {"checkout", "-q", "-b", "feature/cart"});
  const OrphanServer server(shop);
  ASSERT_GT(server.port(), 0);

  ClockAhead clock;
  RealOutside real(Self{::getpid(), ::getuid(), home});
  const Outside here = real.parts();
  Machine machine({.self = here.self,
                   .settings = here.settings,
                   .clock = clock,
                   .tools = here.tools,
                   .toolCandidates = here.toolCandidates,
                   .transport = here.transport,
                   .engineSockets = {},
                   .sources = here.sources,
                   .browsers = here.browsers,
                   .targets = here.targets},
                  PrTitles::never);

  const std::vector<Finding> found = machine.findings(machine.scan(0), {});
  const auto card =
      std::find_if(found.begin(), found.end(), [&](const Finding& f) { return f.id == "stack:" + shop; });
  ASSERT_NE(card, found.end());
  EXPECT_EQ(card->bucket, Bucket::leftovers);
  EXPECT_EQ(card->title, "shop is still running");
  EXPECT_THAT(card->detail,
              HasSubstr(" server (port " + std::to_string(server.port()) + "). Branch feature/cart. "));
  EXPECT_THAT(card->detail,
              MatchesRegex(".* Last commit [0-9]+ seconds? ago: “Add the cart”\\. .*13 hours ago.*"));
  EXPECT_THAT(card->evidence.value_or(""), HasSubstr("Folder: ~/shop\nGit repo shop, branch feature/cart."))
      << "who is absent for an orphan";
  ASSERT_EQ(card->actions.size(), 1U);
  EXPECT_EQ(card->actions.front().label, "Stop it");
  EXPECT_EQ(card->actions.front().fix.command(), "kill -TERM " + std::to_string(server.pid()));

  EXPECT_EQ(machine.apply(card->actions.front().fix), std::nullopt);
  ProcessSource& processes = here.sources.processes();
  EXPECT_TRUE(waitUntil([&] { return ::kill(server.pid(), 0) != 0 || !processes.process(server.pid()); }));
}

}  // namespace
}  // namespace tarnwick
