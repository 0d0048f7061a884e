// The Linux source over the live /proc, with children that the test starts.
#include "sampling/linux/linux_process_source.h"

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <thread>

#include "sampling/linux/sock_diag.h"
#include "sampling/process_table.h"
#include "tests/support/posix/child_process.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wait_until.h"

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

void execute(std::vector<std::string> words) {
  std::vector<char*> argv;
  argv.reserve(words.size() + 1);
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  ::execv(argv[0], argv.data());
  ::_exit(127);
}

class LinuxProcessSourceTest : public testing::Test {
 protected:
  static LinuxProcessOptions options() {
    LinuxProcessOptions options;
    options.uid = ::getuid();
    return options;
  }
  static Timestamp now() { return std::chrono::system_clock::now(); }

  LinuxProcessSource source{options()};
};

TEST_F(LinuxProcessSourceTest, ABusyChildIsBusyAndAnIdleOneIsNot) {
  const ChildProcess busy([] { execute({"/bin/sh", "-c", "while :; do :; done"}); });
  const ChildProcess idle;
  ProcessTable table(source);
  PidMap<Proc> procs;
  ASSERT_TRUE(waitUntil([&] {
    table.firstPass();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    procs = table.secondPass(now());
    const double cpu = procs[busy.pid()].cpu;
    return cpu > 0.2 && cpu < 1.2 && procs[idle.pid()].cpu < 0.1;
  }));
  const Proc& proc = procs.at(idle.pid());
  EXPECT_EQ(proc.ppid, ::getpid());
  EXPECT_EQ(proc.path, std::filesystem::read_symlink("/proc/self/exe"));
  EXPECT_EQ(proc.cwd, std::filesystem::current_path());
  EXPECT_GT(proc.resident, proc.footprint);
  EXPECT_GT(proc.footprint, 0U);
  EXPECT_GT(secondsBetween(proc.started, now()), -2);
  EXPECT_LT(secondsBetween(proc.started, now()), 120);
}

TEST_F(LinuxProcessSourceTest, FootprintHoldsAnonymousAndSharedMemory) {
  constexpr std::size_t bytes = std::size_t{16} << 20U;
  const ChildProcess child([] {
    const auto grab = [](int kind) {
      void* memory =
          ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_ANONYMOUS | MAP_POPULATE | kind, -1, 0);
      if (memory == MAP_FAILED) ::_exit(1);
    };
    grab(MAP_PRIVATE);
    grab(MAP_SHARED);
  });
  EXPECT_TRUE(waitUntil([&] {
    source.beginPass();
    const auto usage = source.usage(child.pid());
    return usage && usage->footprint >= 2 * bytes && usage->resident >= usage->footprint;
  }));
}

TEST_F(LinuxProcessSourceTest, WhatIsRememberedEndsWithTheProcessAndItsParent) {
  std::array<int, 2> channel{};
  ASSERT_EQ(::pipe(channel.data()), 0);
  std::optional<ChildProcess> parent;
  parent.emplace([&] {
    const pid_t grandchild = ::fork();
    if (grandchild == 0) {
      while (true) ::pause();
    }
    if (::write(channel[1], &grandchild, sizeof grandchild) < 0) ::_exit(1);
  });
  pid_t grandchild = 0;
  ASSERT_EQ(::read(channel[0], &grandchild, sizeof grandchild), static_cast<ssize_t>(sizeof grandchild));
  const auto parentOf = [&](Pid pid) {
    source.beginPass();
    const auto facts = source.facts(pid);
    return facts ? facts->ppid : -1;
  };
  const Pid before = parent->pid();
  EXPECT_EQ(parentOf(grandchild), before);
  EXPECT_EQ(parentOf(grandchild), before) << "now from memory";
  parent.reset();
  EXPECT_NE(parentOf(grandchild), before) << "an orphan has another parent";
  EXPECT_EQ(parentOf(before), -1) << "gone and waited for";
  ::kill(grandchild, SIGKILL);
  for (const int end : channel) ::close(end);
}

TEST_F(LinuxProcessSourceTest, EveryNewProcessIsAskedAboutButAnotherUsersHasNoFacts) {
  for (int round = 0; round < 3; ++round) {
    source.candidates();
    const ChildProcess child;
    EXPECT_THAT(source.candidates(), testing::Contains(child.pid()));
    EXPECT_TRUE(source.facts(child.pid()));
  }
  if (::getuid() != 0) GTEST_SKIP() << "starting a process of another user takes root";
  const ChildProcess other([] {
    if (::setuid(65'534) != 0) ::_exit(1);
  });
  EXPECT_FALSE(source.facts(other.pid()));
}

TEST_F(LinuxProcessSourceTest, AnEndedChildHasOnlyItsName) {
  ChildProcess child([] {
    ::prctl(PR_SET_NAME, "a) b\n(c");
    ::_exit(0);
  });
  child.waitUntilZombie();
  ASSERT_TRUE(source.facts(child.pid()));
  EXPECT_EQ(source.path(child.pid()), "");
  EXPECT_THAT(source.args(child.pid()), ElementsAre("a) b\n(c"));
  ASSERT_TRUE(source.usage(child.pid()));
  EXPECT_EQ(source.usage(child.pid())->resident, 0U);
  child.killed();
  EXPECT_FALSE(source.facts(child.pid())) << "ended since the pass began";
  source.beginPass();
  EXPECT_FALSE(source.facts(child.pid()));
  EXPECT_FALSE(source.usage(child.pid()));
  EXPECT_FALSE(source.processorTime(child.pid()));
  EXPECT_THAT(source.args(child.pid()), IsEmpty());
  EXPECT_THAT(source.listenPorts(child.pid()), IsEmpty());
}

TEST_F(LinuxProcessSourceTest, EmptyAndInvalidArgumentsAndADeletedExecutableAreRead) {
  const TempFolder folder;
  const std::string copy = folder.at("a copy");
  std::filesystem::copy_file("/bin/sh", copy);
  std::vector<std::string> words{copy, "-c", "kill -STOP $$", std::string(100'000, 'x'), "", "\xC3(", ""};
  const ChildProcess child([&] { execute(words); });
  std::filesystem::remove(copy);
  words[5] = "\xEF\xBF\xBD(";
  EXPECT_TRUE(waitUntil([&] {
    source.beginPass();
    return source.args(child.pid()) == words;
  }));
  EXPECT_EQ(source.path(child.pid()), copy);
}
// A socket listening on `port` (0: any) of the loopback address; -1 on failure.
template <typename Address>
int listenOn(Address address) {
  const auto* generic = reinterpret_cast<const sockaddr*>(&address);
  const int number = ::socket(generic->sa_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const int only = 1;
  if (generic->sa_family == AF_INET6) ::setsockopt(number, IPPROTO_IPV6, IPV6_V6ONLY, &only, sizeof only);
  if (::bind(number, generic, sizeof address) == 0 && ::listen(number, 1) == 0) return number;
  ::close(number);
  return -1;
}

TEST_F(LinuxProcessSourceTest, APortOfBothFamiliesIsListedOnce) {
  sockaddr_in v4{};
  v4.sin_family = AF_INET;
  v4.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const int first = listenOn(v4);
  ASSERT_GE(first, 0);
  socklen_t length = sizeof v4;
  ASSERT_EQ(::getsockname(first, reinterpret_cast<sockaddr*>(&v4), &length), 0);
  sockaddr_in6 v6{};
  v6.sin6_family = AF_INET6;
  v6.sin6_addr = in6addr_loopback;
  v6.sin6_port = v4.sin_port;
  const int second = listenOn(v6);
  if (second < 0) GTEST_SKIP() << "no IPv6 here, or the port is taken there";
  const ChildProcess server;
  const ChildProcess other([&] {
    ::close(first);
    ::close(second);
  });
  const std::uint16_t port = ntohs(v4.sin_port);
  EXPECT_THAT(source.listenPorts(server.pid()), ElementsAre(port));
  EXPECT_TRUE(waitUntil([&] { return source.listenPorts(other.pid()).empty(); }));

  const ProcReader reader("/proc");
  EXPECT_THAT(ListeningPorts(reader, false).of(server.pid()), ElementsAre(port)) << "from the text tables";
  const auto diag = listenersFromSockDiag();
  ASSERT_TRUE(diag) << "netlink does not answer here";
  EXPECT_EQ(std::ranges::count(*diag, port, &Listener::port), 2);

  ::close(first);
  ::close(second);
}

}  // namespace
}  // namespace tarnwick
