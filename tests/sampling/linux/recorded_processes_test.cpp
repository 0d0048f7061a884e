// The Linux source over made trees: every file may be missing, odd or hostile.
#include <gmock/gmock.h>
#include <unistd.h>

#include "sampling/linux/linux_process_source.h"
#include "sampling/process_table.h"
#include "tests/sampling/linux/proc_tree.h"

using namespace std::string_view_literals;

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int64_t boot = 1'000'000;  // as the made trees have it

std::uint64_t ticks(double seconds) {
  return static_cast<std::uint64_t>(seconds * static_cast<double>(::sysconf(_SC_CLK_TCK)));
}
std::uint64_t pageSize() { return static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE)); }

class RecordedProcessesTest : public testing::Test {
 protected:
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
  const auto procs = sample(boot + 50'000);
  ASSERT_EQ(procs.size(), 1U);
  const Proc& proc = procs.at(300);
  EXPECT_EQ(proc.ppid, 7);
  EXPECT_EQ(proc.path, "/usr/bin/tool");
  EXPECT_THAT(proc.args, ElementsAre("tool", "--go"));
  EXPECT_EQ(proc.started, timestamp(boot + 2));
  EXPECT_EQ(proc.resident, 100 * pageSize());
  EXPECT_EQ(proc.footprint, 60 * pageSize());
  EXPECT_EQ(proc.cwd, "/home/ada");
  EXPECT_THAT(proc.ports, ElementsAre(80, 8080));
}

TEST_F(RecordedProcessesTest, ListsOnlyTheUsersProcessesInAscendingOrder) {
  for (const Pid pid : {30, 4, 100}) tree.process(pid, {});
  for (const auto other : {"self/x", "5x/stat", "-3/stat", "99999999999/stat", "0/stat"})
    tree.write(other, "");
  std::vector<Pid> expected{2, 4, 30, 100};
  if (::getuid() == 0) {
    ASSERT_EQ(::chown((tree.root() + "/30").c_str(), 12345, 12345), 0);
    expected = {2, 4, 100};
  }
  LinuxProcessSource source(tree.options());
  EXPECT_EQ(source.myPids().size(), expected.size() - 1);
  EXPECT_THAT(ProcReader(tree.root()).pidsOf(::getuid(), 1), ElementsAre(4));
  tree.process(2, {});
  EXPECT_EQ(source.myPids(), expected) << "listed afresh each time";
  auto options = tree.options();
  options.procRoot += "/nothing";
  EXPECT_THAT(LinuxProcessSource(options).myPids(), IsEmpty());
}

TEST_F(RecordedProcessesTest, MissingAndOddFilesAreNeutral) {
  tree.process(10, {});
  tree.remove("10/stat");
  tree.process(11, {});
  tree.write("11/stat", "11 (tool");
  tree.process(12, {});
  for (const auto file : {"12/exe", "12/cwd", "12/statm"}) tree.remove(file);
  tree.process(13, {.name = "ghost"});
  tree.remove("13/exe");
  tree.write("13/cmdline", "");
  tree.process(15, {.startTicks = std::uint64_t{1} << 63U});
  tree.process(16, {});
  tree.write("16/statm", "1 18446744073709551615 0");
  const auto procs = sample();
  EXPECT_FALSE(procs.contains(10));
  EXPECT_FALSE(procs.contains(11));
  EXPECT_EQ(procs.at(12).path, "");
  EXPECT_EQ(procs.at(12).cwd, "");
  EXPECT_EQ(procs.at(12).resident, 0U);
  EXPECT_THAT(procs.at(12).args, ElementsAre("tool", "--go"));
  EXPECT_THAT(procs.at(13).args, ElementsAre("ghost"));
  EXPECT_GE(procs.at(15).started, timestamp(boot));
  EXPECT_EQ(procs.at(16).resident, 0U);
}

TEST_F(RecordedProcessesTest, KernelThreadsHaveANameAndNothingElse) {
  tree.process(20, {.name = "kworker/0:1", .ppid = 2, .flags = 0x00208060});
  tree.process(21, {.name = "a/b", .state = 'Z'});
  const auto procs = sample();
  for (const Pid pid : {20, 21}) {
    EXPECT_EQ(procs.at(pid).path, "");
    EXPECT_EQ(procs.at(pid).cwd, "");
    EXPECT_EQ(procs.at(pid).resident, 0U);
  }
  EXPECT_THAT(procs.at(20).args, ElementsAre("kworker-0:1"));
  EXPECT_THAT(procs.at(21).args, ElementsAre("a/b"));
}

TEST_F(RecordedProcessesTest, FootprintReadsStatusOnlyWhereItMatters) {
  const std::uint64_t statm = 60 * pageSize();
  const std::uint64_t status = std::uint64_t{10 + 20 + 30} * 1024;
  const auto many = ProcessMemory::sharedMemoryMatters / pageSize();
  const auto statmWith = [](std::uint64_t shared, std::uint64_t resident) {
    return "0 " + std::to_string(resident) + " " + std::to_string(shared) + " 0\n";
  };
  const struct {
    std::string meminfo, pages;
    std::uint64_t footprint;
  } cases[] = {
      {"Shmem: 9 kB\nSwapTotal: 9 kB\nSwapFree: 9 kB\n", statmWith(40, 100), statm},
      {"Shmem: 0 kB\nSwapTotal: 9 kB\nSwapFree: 8 kB\n", statmWith(40, 100), status},  // swap is in use
      {"Shmem: 9 kB\n", statmWith(many - 1, many + 59), statm},
      {"Shmem: 9 kB\n", statmWith(many, many + 60), status},
      {"Shmem: 0 kB\n", statmWith(many, many + 60), statm},
      {"", statmWith(40, 100), status},
      {"Shmem: 0 kB\n", statmWith(101, 100), 0},
  };
  for (const auto& [meminfo, pages, footprint] : cases) {
    tree.process(30, {});
    tree.write("meminfo", meminfo);
    tree.write("30/statm", pages);
    EXPECT_EQ(sample().at(30).footprint, footprint) << meminfo << pages;
  }
}

TEST_F(RecordedProcessesTest, OrphansOfTheUserManagerHaveParentOne) {
  tree.process(50, {.name = "systemd", .ppid = 1});
  tree.process(51, {.ppid = 50});
  tree.process(40, {.ppid = 60});  // read before its parent
  tree.process(60, {.name = "systemd", .ppid = 1});
  tree.process(52, {.name = "systemd", .ppid = 50});  // of a container, say
  tree.process(53, {.ppid = 52});
  tree.process(54, {.ppid = 70});  // parent is gone
  const auto procs = sample();
  EXPECT_EQ(procs.at(51).ppid, 1);
  EXPECT_EQ(procs.at(40).ppid, 1);
  EXPECT_EQ(procs.at(53).ppid, 52);
  EXPECT_EQ(procs.at(54).ppid, 70);
}

TEST_F(RecordedProcessesTest, ApplicationsComeFromTheirUnits) {
  const std::string user = std::to_string(::getuid());
  const std::string slice = "/user.slice/user-" + user + ".slice/user@" + user + ".service/app.slice";
  const std::string unit = "0::" + slice + "/app-gnome-org.example.Paint-7.scope\n";
  tree.process(80, {});
  tree.write("80/cgroup", unit);
  tree.process(81, {.terminal = 34816});
  tree.write("81/cgroup", unit);
  tree.process(82, {});
  EXPECT_EQ(sample().at(80).app, std::nullopt) << "no application slice on the machine";

  std::filesystem::create_directories(tree.cgroups() + "/unified" + slice);
  const auto procs = sample();
  EXPECT_EQ(procs.at(80).app, "org.example.Paint");
  EXPECT_THAT(procs.at(80).args, IsEmpty());
  EXPECT_EQ(procs.at(81).app, std::nullopt) << "a shell in a terminal";
  EXPECT_EQ(procs.at(82).app, std::nullopt);

  auto options = tree.options();
  options.appDisplayName = [](const std::string& id) { return std::optional("Paint of " + id); };
  EXPECT_EQ(LinuxProcessSource(options).app(80, ""), "Paint of org.example.Paint");
  options.appDisplayName = [](const std::string&) { return std::nullopt; };
  EXPECT_EQ(LinuxProcessSource(options).app(80, ""), "org.example.Paint");
}

TEST_F(RecordedProcessesTest, ProcessorTimeComesFromTheTicks) {
  tree.process(90, {.userTicks = 250});
  LinuxProcessSource source(tree.options());
  const auto expected = 250 * (1'000'000'000 / static_cast<std::uint64_t>(::sysconf(_SC_CLK_TCK)));
  EXPECT_EQ(source.processorTime(90), expected);
  EXPECT_EQ(source.usage(90)->processorTime, expected);
  tree.stat(90, {.userTicks = 500});
  source.beginPass();
  EXPECT_EQ(source.usage(90)->processorTime, 2 * expected);
  EXPECT_EQ(source.processorTime(91), std::nullopt);
}

TEST_F(RecordedProcessesTest, ArgumentsGrowTheBufferOnceAndEndAtOneMebibyte) {
  const std::string exact(LinuxProcessSource::firstArgumentBytes, 'x');
  const std::string beyond(LinuxProcessSource::mostArgumentBytes + 5, 'y');
  tree.process(95, {});
  tree.write("95/cmdline", exact);
  tree.process(96, {});
  tree.write("96/cmdline", beyond);
  tree.process(97, {});
  const auto procs = sample();
  EXPECT_THAT(procs.at(95).args, ElementsAre(exact));
  EXPECT_THAT(procs.at(96).args, ElementsAre(beyond.substr(5)));
  EXPECT_THAT(procs.at(97).args, ElementsAre("tool", "--go"));
}

}  // namespace
}  // namespace tarnwick
