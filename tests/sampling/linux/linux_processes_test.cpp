// The Linux source over made trees, where every file may be missing, odd or hostile, and over the live /proc,
// with children that the test starts.
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <netinet/in.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include "sampling/linux/sock_diag.h"
#include "sampling/process_table.h"
#include "system/small_file.h"
#include "tests/sampling/linux/proc_tree.h"
#include "tests/support/fake_clock.h"
#include "tests/support/linux/fuse_mount.h"
#include "tests/support/posix/child_process.h"

namespace {

constexpr std::int64_t boot = 1'000'000;  // as the made trees have it

std::uint64_t ticks(double seconds) {
  return static_cast<std::uint64_t>(seconds * static_cast<double>(::sysconf(_SC_CLK_TCK)));
}
std::uint64_t pageSize() { return static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE)); }

struct RecordedProcessesTest : testing::Test {
  PidMap<Proc> sample(double now = boot + 100) {
    LinuxProcessSource source(tree.options());
    ProcessTable table(source);
    table.firstPass();
    return table.secondPass(timestamp(now));
  }
  ProcTree tree;
};

TEST_F(RecordedProcessesTest, AWholeProcess) {
  tree.process(300, {.ppid = 7, .startTicks = ticks(2.99)});
  tree.link("300/fd/3", "socket:[55]");
  tree.link("300/fd/4", "socket:[56]");
  tree.link("300/fd/5", "socket:[57]");
  tree.link("300/fd/6", "/dev/null");
  tree.write("net/tcp", "0: 0:1F90 0:0 0A 0 0 0 0 0 55\n1: 0:0050 0:0 0A 0 0 0 0 0 56\n");
  tree.write("net/tcp6", "0: 0:1F90 0:0 0A 0 0 0 0 0 57\n1: 0:0051 0:0 0A 0 0 0 0 0 99\n");
  const Proc proc = sample(boot + 50'000).at(300);
  EXPECT_EQ(std::tie(proc.ppid, proc.started, proc.resident, proc.footprint),
            std::tuple(7, timestamp(boot + 2), 100 * pageSize(), 60 * pageSize()));
  EXPECT_THAT(proc.ports, ElementsAre(80, 8080));
}

TEST_F(RecordedProcessesTest, AClockThatWasSetMovesEveryStart) {
  tree.process(300, {.startTicks = ticks(5)});
  LinuxProcessSource source(tree.options());
  ProcessTable table(source);
  for (const std::int64_t bootNow : {boot, boot + 46'800, boot - 46'800}) {
    tree.write("stat", "btime " + std::to_string(bootNow) + "\n");
    table.firstPass();
    const Proc proc = table.secondPass(timestamp(static_cast<double>(bootNow + 6))).at(300);
    EXPECT_EQ(proc.started, timestamp(static_cast<double>(bootNow + 5)));
    EXPECT_EQ(source.clock().bootTime, bootNow) << "the remedies' clock";
  }
}

// Whoever was not listed would count as gone.
TEST_F(RecordedProcessesTest, AListThatBreaksOffIsNone) {
  const FuseMount mount(tree.root(), FuseMount::Kind::stopped);
  if (!mount.isMounted()) GTEST_SKIP() << "mounting takes root";
  EXPECT_THAT(folderEntries(tree.root()), ElementsAre("7"));
  EXPECT_THAT(ProcReader(tree.root()).pids(), IsEmpty());
}

TEST_F(RecordedProcessesTest, ListsOnlyTheUsersProcessesInAscendingOrder) {
  for (const Pid pid : {30, 4, 100}) tree.process(pid, {});
  for (const auto other : {"self/x", "5x/stat", "-3/stat", "99999999999/stat", "0/stat"})
    tree.write(other, "");
  std::vector<Pid> expected{2, 4, 30, 100};
  if (::getuid() == 0 && ::chown((tree.root() + "/30").c_str(), 12345, 12345) == 0) expected = {2, 4, 100};
  LinuxProcessSource source(tree.options());
  EXPECT_EQ(source.myPids().size(), expected.size() - 1);
  EXPECT_THAT(ProcReader(tree.root()).pidsOf(::getuid(), 1), ElementsAre(4));
  tree.write("loadavg", "0.53 1.10 1.02 1/1098 4711\n");
  EXPECT_EQ(ProcReader(tree.root()).newest(), std::nullopt) << "a tree that is not the kernel's";
  EXPECT_TRUE(ProcReader("/proc").newest());
  tree.process(2, {});
  EXPECT_EQ(source.myPids(), expected) << "listed afresh each time";
  auto options = tree.options();
  options.procRoot += "/nothing";
  EXPECT_THAT(LinuxProcessSource(options).myPids(), IsEmpty());
}

TEST_F(RecordedProcessesTest, MissingAndOddFilesAreNeutral) {
  for (const Pid pid : {10, 11, 12, 16}) tree.process(pid, {});
  tree.process(13, {.name = "ghost"});
  tree.process(15, {.startTicks = std::uint64_t{1} << 63U});
  for (const auto file : {"10/stat", "12/exe", "12/cwd", "12/statm", "13/exe"}) tree.remove(file);
  tree.write("11/stat", "11 (tool");
  tree.write("13/cmdline", "");
  tree.write("16/statm", "1 18446744073709551615 0");
  const auto procs = sample();
  EXPECT_FALSE(procs.contains(10) || procs.contains(11));
  EXPECT_EQ(procs.at(12).path + procs.at(12).cwd + procs.at(12).args.at(1), "--go");
  EXPECT_EQ(procs.at(12).resident + procs.at(16).resident, 0U);
  EXPECT_THAT(procs.at(13).args, ElementsAre("ghost"));
  EXPECT_GE(procs.at(15).started, timestamp(boot));
}

TEST_F(RecordedProcessesTest, FootprintReadsStatusOnlyWhereItMatters) {
  const std::uint64_t statm = 60 * pageSize();
  const std::uint64_t status = std::uint64_t{10 + 20 + 30} * 1024;
  const auto many = ProcessMemory::sharedMemoryMatters / pageSize();
  const std::tuple<std::string, std::uint64_t, std::uint64_t, std::uint64_t> cases[] = {
      {"Shmem: 9 kB\nSwapTotal: 9 kB\nSwapFree: 9 kB\n", 40, 100, statm},
      {"Shmem: 0 kB\nSwapTotal: 9 kB\nSwapFree: 8 kB\n", 40, 100, status},  // swap is in use
      {"Shmem: 9 kB\n", many - 1, many + 59, statm},
      {"Shmem: 9 kB\n", many, many + 60, status},
      {"Shmem: 0 kB\n", many, many + 60, statm},
      {"", 40, 100, status},
      {"Shmem: 0 kB\n", 101, 100, 0},
  };
  tree.process(30, {});
  for (const auto& [meminfo, shared, resident, footprint] : cases) {
    tree.write("meminfo", meminfo);
    tree.write("30/statm", "0 " + std::to_string(resident) + " " + std::to_string(shared) + " 0\n");
    EXPECT_EQ(sample().at(30).footprint, footprint) << meminfo << shared;
  }
  tree.write("meminfo", "Shmem: 9 kB\nSwapTotal: 9 kB\nSwapFree: 8 kB\n");
  tree.write("30/statm", "900 100 40 1 0 1 0\n");
  for (const std::size_t groups : {0U, 2'457U, 458'752U}) {  // bytes of the line
    tree.write("30/status", "Name:\ttool\nGroups:\t" + std::string(groups, '7') +
                                "\nRssAnon:\t10 kB\nRssShmem:\t20 kB\nVmSwap:\t30 kB\n");
    EXPECT_EQ(sample().at(30).footprint, status) << groups << " bytes of groups";
  }
}

TEST_F(RecordedProcessesTest, ServiceManagersAndSessionsTellWhoWasAdoptedAndWhoIsTypedInto) {
  for (const Pid manager : {50, 60}) tree.process(manager, {.name = "systemd", .ppid = 1});
  tree.process(52, {.name = "systemd", .ppid = 50});  // of a container, say
  tree.process(70, {.name = "reaper", .session = 70});
  tree.process(76, {.terminal = 34816, .session = 76});
  // Pid, parent, session, terminal: of the service managers, then of the reaper a child, one of an ended
  // session, one that leads its own. 40 is read before its parent, the parent of 54 is gone.
  const std::tuple<Pid, Pid, Pid, int, Pid, bool> cases[] = {
      {51, 50, 1, 0, 1, false},      {40, 60, 1, 0, 1, false},   {53, 52, 1, 0, 52, false},
      {54, 99, 1, 0, 99, false},     {71, 70, 70, 0, 70, false}, {72, 70, 40, 0, 1, false},
      {73, 70, 73, 34816, 70, true}, {74, 70, 74, 0, 70, false}, {75, 70, 0, 34816, 70, false}};
  for (const auto& [pid, ppid, session, terminal, parent, typedInto] : cases) {
    tree.process(pid, {.ppid = ppid, .terminal = terminal, .session = session});
    tree.write(std::to_string(pid) + "/cmdline", std::string_view("/bin/ksh\0", 9));
  }
  const auto procs = sample();
  for (const auto& [pid, ppid, session, terminal, parent, typedInto] : cases)
    EXPECT_EQ(std::tuple(procs.at(pid).session, procs.at(pid).ppid, procs.at(pid).terminalShell),
              std::tuple(session, parent, typedInto))
        << pid;
  EXPECT_FALSE(procs.at(76).terminalShell) << "no shell";
}

// What was read about one process must not answer for the next, in whatever order they are asked.
TEST_F(RecordedProcessesTest, AProgramAndAKernelThreadThatAreAskedInTurnKeepToTheirOwn) {
  tree.process(91, {.ppid = 5, .userTicks = 100});
  tree.process(92, {.name = "kworker/0:1", .ppid = 2, .flags = 0x00208060, .userTicks = 300});
  LinuxProcessSource source(tree.options());
  source.beginPass();
  const auto tick = 1'000'000'000 / static_cast<std::uint64_t>(::sysconf(_SC_CLK_TCK));
  const auto program = source.process(91);
  const auto thread = source.process(92);
  const auto said = [](auto& process) {
    const ProcessUsage usage = process->usage().value();
    return std::tuple(process->facts().ppid, process->path() + process->cwd(), process->args(),
                      usage.resident, usage.processorTime);
  };
  EXPECT_EQ(said(program),
            std::tuple(5, "/usr/bin/tool/home/ada", Strings{"tool", "--go"}, 100 * pageSize(), 100 * tick));
  EXPECT_EQ(said(thread), std::tuple(2, "", Strings{"kworker-0:1"}, 0U, 300 * tick));
  tree.stat(91, {.userTicks = 500});
  EXPECT_EQ(source.process(91)->usage()->processorTime, 500 * tick);
  EXPECT_EQ(source.processorTime(92), 300 * tick);
  EXPECT_EQ(source.processorTime(93), std::nullopt);
}

TEST_F(RecordedProcessesTest, TheStatCacheForgetsWhatOnePassDidNotFind) {
  const ProcReader reader(tree.root());
  StatCache cache(reader, true);
  for (const Pid pid : {91, 92, 93}) cache.keep(pid, 7, {.name = "tool", .ppid = 1});
  cache.beginPass();
  cache.beginPass();  // asked for nobody: the first look of a check
  EXPECT_TRUE(cache.find(91, 7));
  EXPECT_FALSE(cache.find(93, 8)) << "another process of the same pid";
  cache.beginPass();
  EXPECT_TRUE(cache.find(91, 7));
  EXPECT_FALSE(cache.find(92, 7)) << "not found in the pass before";
}

TEST(SockDiag, ADatagramThatIsCutIsNoAnswer) {
  std::string datagram;
  const auto add = [&](std::uint16_t type, const auto& body) {
    const nlmsghdr header{.nlmsg_len = static_cast<std::uint32_t>(sizeof(nlmsghdr) + sizeof body),
                          .nlmsg_type = type};
    datagram.append(reinterpret_cast<const char*>(&header), sizeof header);
    datagram.append(reinterpret_cast<const char*>(&body), sizeof body);
  };
  inet_diag_msg message{};
  message.id.idiag_sport = htons(8'080);
  message.idiag_inode = 55;
  add(SOCK_DIAG_BY_FAMILY, message);
  const std::size_t first = datagram.size();
  add(NLMSG_DONE, 0);
  for (std::size_t size = 0; size <= datagram.size(); ++size) {
    std::vector<Listener> listeners;
    const Dump dump = takeListeners(
        std::vector<char>(datagram.begin(), datagram.begin() + static_cast<std::ptrdiff_t>(size)), listeners);
    EXPECT_EQ(dump == Dump::complete, size == datagram.size()) << size;
    EXPECT_EQ(dump == Dump::goesOn, size % first < sizeof(nlmsghdr)) << size;
    EXPECT_EQ(listeners, std::vector<Listener>(size >= first ? 1 : 0, Listener{55, 8'080})) << size;
  }
}

TEST_F(RecordedProcessesTest, ArgumentsGrowTheBufferOnceAndEndAtOneMebibyte) {
  const std::string before(ArgumentBuffer::mostBytes - 2, 'x');
  for (const Pid pid : {95, 96, 97}) tree.process(pid, {});
  tree.write("95/cmdline", before.substr(0, ArgumentBuffer::firstBytes) + '\0' + "last");
  tree.write("96/cmdline", before + '\0' + "y cut");
  const auto procs = sample();
  EXPECT_THAT(procs.at(95).args, ElementsAre(SizeIs(4'096), "last"));
  EXPECT_THAT(procs.at(96).args, ElementsAre(SizeIs(4'096), "y"));
  EXPECT_THAT(procs.at(97).args, ElementsAre("tool", "--go"));
}

void execute(std::vector<std::string> words) {
  std::vector<char*> argv(words.size() + 1);
  std::ranges::transform(words, argv.begin(), [](std::string& word) { return word.data(); });
  ::execv(argv[0], argv.data());
  ::_exit(127);
}

// Memory that is really there.
void* mapped(std::size_t bytes, int kind) {
  return ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_ANONYMOUS | MAP_POPULATE | kind, -1, 0);
}

struct LinuxProcessSourceTest : testing::Test {
  static Timestamp now() { return std::chrono::system_clock::now(); }

  LinuxProcessSource source{{.uid = ::getuid()}};
};

TEST_F(LinuxProcessSourceTest, WorkIsSeenOfOnesOwnProcessesAndOfOtherUsers) {
  constexpr uid_t nobody = 65'534;
  const bool root = ::getuid() == 0;  // starting a process of another user takes it
  const auto spin = [](uid_t user) {
    if (user == ::getuid() || ::setuid(user) == 0) execute({"/bin/sh", "-c", "while :; do :; done"});
  };
  const ChildProcess busy([&] { spin(::getuid()); });
  const ChildProcess others([&] { spin(root ? nobody : ::getuid()); });
  const ChildProcess idle;
  ProcessTable table(source);
  PidMap<Proc> procs;
  std::map<Pid, OtherProc> seen;
  EXPECT_TRUE(waitUntil([&] {
    table.firstPass();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    procs = table.secondPass(now());
    for (const OtherProc& other : table.others(true)) seen[other.pid] = other;
    const double cpu = procs[busy.pid()].cpu;
    return cpu > 0.05 && cpu < 1.2 && procs[idle.pid()].cpu < 0.05 &&
           (!root || seen[others.pid()].cpu > 0.05);
  }));
  const Proc& proc = procs.at(idle.pid());
  EXPECT_EQ(std::tie(proc.ppid, proc.path, proc.cwd),
            std::tuple(::getpid(), std::filesystem::read_symlink("/proc/self/exe"),
                       std::filesystem::current_path()));
  EXPECT_TRUE(proc.resident > proc.footprint && proc.footprint > 0);
  const OtherProc& other = seen[others.pid()];
  EXPECT_EQ(std::tuple(other.uid, other.name), std::tuple(root ? nobody : 0, root ? "sh" : ""));
  EXPECT_EQ(other.resident > 100'000 && other.footprint > 10'000U && other.footprint < other.resident, root);
  EXPECT_TRUE(!root || std::abs(secondsBetween(other.started, procs.at(busy.pid()).started)) < 60);
  EXPECT_FALSE(root && source.process(others.pid()));
  EXPECT_EQ(table.namesOf({other})[nobody], root ? "nobody" : "");
}

TEST_F(LinuxProcessSourceTest, EveryNewProcessIsAskedAboutAndWhatIsRememberedOfItIsNotTheNextOnes) {
  constexpr std::size_t bytes = std::size_t{64} << 20U;  // more than sanitizers add to the small one
  source.candidates();
  const ChildProcess large([] { mapped(bytes, MAP_PRIVATE); });
  EXPECT_THAT(source.candidates(), Contains(large.pid()));
  const ChildProcess small;
  EXPECT_THAT(source.candidates(), Contains(small.pid()));
  for (int check = 0; check < 2; ++check) {  // the second from memory
    source.beginPass();
    const auto first = source.process(large.pid());
    const auto second = source.process(small.pid());
    EXPECT_GE(first->usage()->footprint, bytes);
    EXPECT_LT(second->usage()->footprint, bytes);
    EXPECT_GE(first->usage()->footprint, bytes) << "asked again";
  }
}

TEST_F(LinuxProcessSourceTest, WhatIsRememberedEndsWithTheProcessAndItsParent) {
  auto* const grandchild = static_cast<std::atomic<pid_t>*>(mapped(sizeof(std::atomic<pid_t>), MAP_SHARED));
  std::optional<ChildProcess> parent;
  parent.emplace([&] {
    const pid_t child = ::fork();
    while (child == 0) ::pause();
    *grandchild = child;
  });
  const auto parentOf = [&](Pid pid) {
    source.beginPass();
    const auto process = source.process(pid);
    return process ? process->facts().ppid : -1;
  };
  const Pid before = parent->pid();
  for (int check = 0; check < 2; ++check) EXPECT_EQ(parentOf(*grandchild), before) << "then from memory";
  parent.reset();
  EXPECT_NE(parentOf(*grandchild), before) << "an orphan has another parent";
  EXPECT_EQ(parentOf(before), -1) << "gone and waited for";
  ::kill(*grandchild, SIGKILL);
}

// Its parent may ask about it late or never. What earlier checks know of it must not keep it.
TEST_F(LinuxProcessSourceTest, AnEndedChildIsGoneBeforeItsParentAsks) {
  ChildProcess child;
  for (int check = 0; check < 2; ++check) {
    source.beginPass();
    ASSERT_TRUE(source.process(child.pid())->usage());
  }
  ::kill(child.pid(), SIGKILL);
  child.waitUntilZombie();
  source.beginPass();
  EXPECT_FALSE(source.process(child.pid()));
  EXPECT_FALSE(LinuxProcessSource({.uid = ::getuid()}).process(child.pid())) << "first seen now";
  child.killed();
  EXPECT_FALSE(source.process(child.pid()) || source.processorTime(child.pid()));
}

TEST_F(LinuxProcessSourceTest, EmptyAndInvalidArgumentsAndADeletedExecutableAreRead) {
  const TempFolder folder;
  const std::string copy = folder.at("a copy");
  std::filesystem::copy_file("/bin/sh", copy);
  std::vector<std::string> words{copy, "-c", "kill -STOP $$", std::string(100'000, 'x'), "", "\xC3(", ""};
  const ChildProcess child([&] { execute(words); });
  std::filesystem::remove(copy);
  words[3].resize(4'096);
  words[5] = "\xEF\xBF\xBD(";
  EXPECT_TRUE(waitUntil([&] { return source.process(child.pid())->args() == words; }));
  EXPECT_EQ(source.process(child.pid())->path(), copy);
}

// A socket that listens on the address, which learns its port; -1 on failure.
template <typename Address>
int listenOn(Address& address) {
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  socklen_t length = sizeof address;
  const int number = ::socket(generic->sa_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const int only = 1;
  if (generic->sa_family == AF_INET6) ::setsockopt(number, IPPROTO_IPV6, IPV6_V6ONLY, &only, sizeof only);
  const bool listens = ::bind(number, generic, length) == 0 && ::listen(number, 1) == 0;
  return listens && ::getsockname(number, generic, &length) == 0 ? number : -1;
}

TEST_F(LinuxProcessSourceTest, APortOfBothFamiliesIsListedOnce) {
  sockaddr_in v4{.sin_family = AF_INET, .sin_addr = {htonl(INADDR_LOOPBACK)}};
  const int first = listenOn(v4);
  ASSERT_GE(first, 0);
  sockaddr_in6 v6{.sin6_family = AF_INET6, .sin6_port = v4.sin_port, .sin6_addr = in6addr_loopback};
  const int second = listenOn(v6);
  if (second < 0) GTEST_SKIP() << "no IPv6 here, or the port is taken there";
  const ChildProcess server;
  const ChildProcess other([&] {
    ::close(first);
    ::close(second);
  });
  const std::uint16_t port = ntohs(v4.sin_port);
  EXPECT_THAT(source.process(server.pid())->listenPorts(), ElementsAre(port));
  EXPECT_TRUE(waitUntil([&] { return source.process(other.pid())->listenPorts().empty(); }));
  const ProcReader reader("/proc");
  EXPECT_THAT(ListeningPorts(reader, false).of(*reader.open(server.pid())), ElementsAre(port))
      << "from texts";
  EXPECT_EQ(std::ranges::count(listenersFromSockDiag().value(), port, &Listener::port), 2) << "from netlink";
  for (const int number : {first, second}) ::close(number);
}

// Some programs have millions.
TEST(ListeningPorts, OfManyDescriptorsTheFirstAreLookedAtAndInTime) {
  const ProcTree tree;
  tree.write("net/tcp", "0: 0:0BB8 0:0 0A 0 0 0 0 0 12345\n");
  tree.write("7/stat", "");
  const std::string folder = tree.root() + "/7/fd";
  std::filesystem::create_directory(folder);
  FakeClock clock;
  CheckLimits limits(clock);
  const ProcReader reader(tree.root());
  std::size_t made = 0;
  const std::tuple<std::size_t, double, std::size_t> cases[] = {
      // descriptors, seconds of the check gone by, left out
      {3, 0, 0},
      {3, 8, 0},
      {1'024, 0, 0},
      {1'024, 8, 1},
      {ListeningPorts::mostOfProcess - 1, 0, 0},
      {ListeningPorts::mostOfProcess, 0, 1}};
  for (const auto& [count, gone, leftOut] : cases) {
    for (; made < count; ++made)
      std::filesystem::create_symlink("socket:[12345]", folder + "/" + std::to_string(made));
    limits.begin();
    clock.turn(gone);
    EXPECT_THAT(ListeningPorts(reader, false, &limits).of(*reader.open(7)), ElementsAre(3'000));
    EXPECT_THAT(limits.leftOut(), SizeIs(leftOut)) << count << " after " << gone << " s";
  }
  std::filesystem::remove(folder + "/0");
  limits.begin();
  ListeningPorts all(reader, false, &limits);
  std::size_t processes = 0;
  while (limits.leftOut().empty() && processes < 99) all.of(*reader.open(7)), ++processes;
  EXPECT_EQ(processes, 17U) << "of 16,383 descriptors each; 262,144 of a check are looked at";
}

}  // namespace
