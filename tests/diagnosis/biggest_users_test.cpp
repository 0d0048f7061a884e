// Who uses the machine: which processes count as one, what is said about them, and that it adds up.

#include "diagnosis/biggest_users.h"

#include <fmt/format.h>

#include "tests/support/machines.h"

namespace {

// Each row in a line: kind, what, megabytes, cores, processes, who, project and branch, what stops it.
std::string linesOf(const BiggestUsers& users) {
  std::string lines;
  for (const BiggestUser& row : users.rows)
    lines +=
        fmt::format("{} | {} | {} {} {} | {} | {} {} | {}\n", word(row.kind), row.what, row.bytes / megabyte,
                    row.cpu, row.count, row.who.value_or("-"), row.project.value_or("-"),
                    row.branch.value_or("-"), row.stop ? row.stop->fix.command() : "-");
  return lines;
}

struct BiggestUsersTest : RuleTest {
  // So many megabytes and cores for that process.
  void use(Pid pid, std::uint64_t megabytes, double cpu) {
    m.procs[pid].footprint = megabytes * megabyte;
    m.procs[pid].cpu = cpu;
  }
  BiggestUsers users(std::size_t most = 10) {
    m.index();
    return biggestUsers(m, most, around);
  }
};

TEST_F(BiggestUsersTest, AreGroupedAsPeopleThinkOfThem) {
  const auto appAt = [&](Pid pid, const char* app, std::uint64_t megabytes) {
    addApp(m, pid, app);
    use(pid, megabytes, 0);
  };
  const std::tuple<const char*, std::function<void()>, std::string> cases[] = {
      {"an application with its helpers, and what it started",
       [&] {
         appAt(30, "Zoom", 300), appAt(31, "Zoom", 200), addAll(m, "32 30 sox -q");
         use(32, 90, 0), appAt(33, "Google Chrome", 80);  // browsers bear the name that people use
         m.apps = {{30, "Zoom", "us.zoom", "/Applications/Zoom.app", false}};
       },
       "application | Zoom | 500 0 2 | - | - - | Cmd-Q us.zoom\n"
       "job | sox -q | 90 0 1 | Zoom | - - | kill -TERM 32\n"
       "browser | Chrome | 80 0 1 | - | - - | -\n"},
      {"one job with its children, by whoever started it; a shell is not the job",
       [&] {
         addAll(m,
                "2 1 -zsh, 3 2 zsh -c x, 20 3 make all, 21 20 cc a.c, 22 20 cc b.c, 40 1 claude, 41 40 jest");
         for (const Pid pid : {20, 21, 22, 41})
           use(pid, 100, pid == 41 ? 0 : 0.5), m.procs[pid].cwd = "/Users/dana/shop/src";
         around.present = {"/Users/dana/shop/.git"};
         around.repositories["/Users/dana/shop"] = {.repo = "shop", .branch = "cart"};
       },
       "job | make all | 300 1.5 3 | you | shop cart | kill -TERM 20\n"
       "job | jest | 100 0 1 | Claude Code | shop cart | kill -TERM 41\n"},
      {"loops that a login shell forked bear its name; it is no loop, and a prompt is never to be stopped",
       [&] {
         addAll(m, "2 1 -bash, 50 2 -bash, 51 2 -bash");
         for (const Pid pid : {2, 50, 51}) use(pid, pid == 2 ? 900 : 10, 0);
       },
       "job | bash, a terminal's shell | 900 0 1 | - | - - | -\n"
       "same_command | bash × 2 | 20 0 2 | you | - - | kill -TERM 50; kill -TERM 51\n"},
      {"a project's servers, whoever started each",
       [&] {
         addAll(m,
                "40 1 python3 -m uvicorn app, 2 1 -zsh, 41 2 node server.mjs, 42 40 worker, 43 2 node other");
         for (const Pid pid : {40, 41, 42, 43}) use(pid, 50, 0), m.procs[pid].cwd = around.who.home + "/shop";
         m.procs[40].ports = {8000};
         m.procs[41].ports = {3000};
       },
       "servers | Python API (port 8000) and Node server (port 3000) | 150 0 3 | - | shop - | kill -TERM 40; kill -TERM 41\n"
       "job | node other | 50 0 1 | you | - - | kill -TERM 43\n"},
      {"each container by the engine's name, where it told one",
       [&] {
         m.containerUse = {{"aaaaaaaaaaaa", 700 * megabyte, 0.25, 5}, {"bbbbbbbbbbbb", 600 * megabyte, 0, 1}};
         m.containers = {{"aaaaaaaaaaaa", "shop-db", "Up", "postgres:16", 0}};
         addAll(m, "60 1 postgres");
         use(60, 700, 0.25), m.procs[60].inContainer = true;
       },
       "container | shop-db (Postgres) | 700 0.25 5 | - | - - | docker stop aaaaaaaaaaaa\n"
       "container | container bbbbbbbbbbbb | 600 0 1 | - | - - | -\n"},
      {"the machine in which containers run",
       [&] {
         appAt(80, "Docker", 0), addAll(m, "81 1 vm");
         use(81, 900, 1), m.procs[81].path = "/x/com.apple.Virtualization.VirtualMachine";
         m.containers = {{"c", "db", "", "", 0}};
       },
       "virtual_machine | Docker, with 1 container | 900 1 1 | - | - - | Cmd-Q com.docker.docker\n"},
      {"another user's job, one that the system does not know, and a thread of the kernel",
       [&] {
         m.others = {{7, 0, "kswapd0", 0, 0.75, {}, std::nullopt, true},
                     {8, 33, "apache2", 400 * megabyte, 0, {}, 300 * megabyte},
                     {9, 33, "php", 90 * megabyte, 0.5, {}, 50 * megabyte},
                     {10, 1234, "bad\nname", 100 * megabyte, 0},
                     {11, 33, "contained", 100 * megabyte, 9, {}, std::nullopt, false, true}};
         m.userNames[33] = "www-data";
       },
       "other_user | processes of www-data, mostly php | 350 0.5 2 | www-data | - - | -\n"
       "other_user | processes of user 1234, mostly bad name | 100 0 1 | user 1234 | - - | -\n"
       "kernel | the kernel, mostly kswapd0 | 0 0.75 1 | - | - - | -\n"},
      {"the kernel's threads are root's own; nobody else is one without a path",
       [&] {
         around.who.uid = 0;
         addAll(m, "2 0 kthreadd, 7 2 kworker-0:1, 9 1 real");
         for (const Pid pid : {2, 7, 9}) m.procs[pid].path.clear();
         for (auto& [pid, proc] : m.procs) proc.uid = 0;
         use(7, 0, 0.5), use(9, 0, 0.25);
       },
       "kernel | the kernel, mostly kworker-0:1 | 0 0.5 2 | - | - - | -\n"
       "job | real | 0 0.25 1 | - | - - | -\n"},
      {"what a session stands on is not to be stopped, nor is this program and what it is part of",
       [&] {
         addAll(
             m,
             "50 1 dbus-daemon, 51 1 /usr/libexec/gvfsd, 52 1 /opt/hog, 2 1 -zsh, 20 2 make run, 4242 20 self");
         m.procs[51].path = "/usr/libexec/gvfsd";
         for (const Pid pid : {50, 51, 52, 20, 4242}) use(pid, static_cast<std::uint64_t>(pid), 0);
       },
       "job | hog | 52 0 1 | - | - - | kill -TERM 52\n"
       "job | gvfsd | 51 0 1 | - | - - | -\n"
       "job | dbus-daemon | 50 0 1 | - | - - | -\n"
       "job | make run | 20 0 1 | you | - - | -\n"}};
  for (const auto& [what, lay, expected] : cases) {
    m = machine();
    m.pressure = 2;
    around = {};
    lay();
    EXPECT_EQ(linesOf(users()), expected) << what;
  }
}

TEST_F(BiggestUsersTest, AreTheBiggestByEitherAndAddUpToTheMachine) {
  addAll(m, "20 1 a, 21 1 b, 22 1 c, 23 1 d, 4242 1 self");
  use(20, 4000, 0.5), use(21, 3000, 0), use(22, 0, 2), use(23, 500, 1), use(4242, 9, 0.25);
  const auto order = [](const BiggestUsers& found) {
    std::string names;
    for (const BiggestUser& row : found.rows) names += row.what;
    return names;
  };
  // Pressure, busy share, memory in use in megabytes; then what is scarce, the two biggest of each, what the
  // rows leave.
  const std::tuple<const char*, int, double, std::uint64_t, Scarce, const char*, std::int64_t, double>
      cases[] = {{"short of memory", 2, 0.9, 10'000, Scarce::memory, "abdc", 2500, 5.5},
                 {"short of processor time", 1, 0.81, 16'000, Scarce::processor, "cdab", 8500, 4.6},
                 {"neither, memory nearer to its end", 1, 0.5, 10'000, Scarce::memory, "abdc", 2500, 1.5},
                 {"neither, the processor nearer", 1, 0.8, 8'000, Scarce::processor, "cdab", 500, 4.5},
                 {"what is shared counts twice", 1, 0.8, 7'000, Scarce::processor, "cdab", -500, 4.5},
                 {"figures are unknown", 1, 0, 0, Scarce::memory, "abdc", 0, 0}};
  for (const auto& [what, pressure, busy, inUse, scarce, names, restMegabytes, restCpu] : cases) {
    m.pressure = pressure;
    m.cpuBusy = busy;
    m.memoryInUse = inUse * megabyte;
    const BiggestUsers found = users(2);
    EXPECT_EQ(std::tuple(found.scarce, order(found)), std::tuple(scarce, names)) << what;
    EXPECT_EQ(found.restBytes, restMegabytes * static_cast<std::int64_t>(megabyte)) << what;
    EXPECT_NEAR(found.restCpu, restCpu, 1e-9) << what;
    EXPECT_EQ(found.restCount, 1) << what << ": this program itself";
  }
  m.cpuBusy = 0.175;  // half of what the processes seem to have used, each in an interval of its own
  const BiggestUsers found = users(2);
  EXPECT_DOUBLE_EQ(found.rows[0].cpu + found.rows[1].cpu + found.rows[2].cpu + found.rows[3].cpu, 1.75);
  EXPECT_EQ(users(1).restCount, 3) << "two of five are rows";
  EXPECT_EQ(biggestOf(users(2), Scarce::memory, 2, m), "a 3.9 GB, b 2.9 GB");
  m.cpuBusy = 0;
  EXPECT_EQ(biggestOf(users(2), Scarce::processor, 3, m), "c 20% CPU, d 10% CPU, a 5% CPU");
  EXPECT_EQ(biggestOf({}, Scarce::memory, 3, m), "");
}

TEST_F(BiggestUsersTest, NoFigureFromOutsideBreaksTheSums) {
  addAll(m, "20 1 a, 21 1 b");
  for (const double cpu : {std::nan(""), std::numeric_limits<double>::infinity(), -1.0, 1e300}) {
    for (const Pid pid : {20, 21}) m.procs[pid].cpu = cpu, m.procs[pid].footprint = ~0ULL;
    const BiggestUsers found = users();
    EXPECT_EQ(std::tuple(found.cpuInUse, found.restCpu, found.bytesInUse), std::tuple(0.0, 0.0, ~0ULL))
        << cpu;
  }
}

}  // namespace
