#include "tests/support/machines.h"

namespace tarnwick {
namespace {

using CpuHogs = RuleTest;

TEST_F(CpuHogs, LeaveWhatOtherRulesReport) {
  addApp(m, 10, "Vivaldi").cpu = 3;
  add(m, 11, 1, {"/usr/libexec/mdworker"}).cpu = 3;
  add(m, around.who.pid, 1, {"me"}).cpu = 3;
  addApp(m, 80, "Docker");
  for (const auto& [pid, path] :
       {std::pair{81, "/x/com.apple.Virtualization.VirtualMachine"}, {63, "/x/com.apple.WebKit.GPU"}}) {
    add(m, pid, 1, {"x"}).cpu = 3;
    m.procs[pid].path = path;
  }
  EXPECT_THAT(ids(cpuHogs(m, around)), ElementsAre("cpu:pid:63"));
  addApp(m, 62, "Safari");
  EXPECT_THAT(cpuHogs(m, around), IsEmpty()) << "the page is Safari's now";
  m.procs.erase(80);
  EXPECT_THAT(ids(cpuHogs(m, around)), ElementsAre("cpu:pid:81")) << "some other program's machine";
}

TEST_F(CpuHogs, LeaveContainersToTheirCard) {
  add(m, 90, 1, {"containerd-shim"});
  add(m, 91, 90, {"postgres"}).cpu = 3;
  EXPECT_THAT(ids(cpuHogs(m, around)), ElementsAre("cpu:pid:90")) << "nobody said that it is in one";
  m.procs[91].inContainer = true;
  EXPECT_THAT(cpuHogs(m, around), IsEmpty());
  addApp(m, 80, "Docker");
  add(m, 81, 1, {"vm"}).path = "/x/com.apple.Virtualization.VirtualMachine";
  EXPECT_THAT(ids(cpuHogs(m, around)), ElementsAre("cpu:pid:90")) << "the card is the machine's";
}

TEST_F(CpuHogs, AddUpToOneCore) {
  add(m, 2, 1, {"-zsh"});
  add(m, 20, 2, {"make"}).cpu = 0.5;
  add(m, 21, 20, {"cc"}).cpu = 0.49;
  add(m, 22, 20, {"cc"}).cpu = 0.01;  // idle: does not count
  EXPECT_THAT(cpuHogs(m, around), IsEmpty());
  m.procs[21].cpu = 0.5;
  EXPECT_THAT(ids(cpuHogs(m, around)), ElementsAre("cpu:pid:20"));
}

TEST_F(CpuHogs, AnApplication) {
  addApp(m, 30, "Zoom").cpu = 0.6;
  addApp(m, 31, "Zoom").cpu = 0.6;
  const Finding found = only(cpuHogs(m, around));
  EXPECT_EQ(std::tie(found.id, found.title, found.detail, found.summary, found.icon),
            std::tuple("cpu:Zoom", "Zoom is busy", "It runs 2 processes.",
                       "It takes processor time from your other apps.", "app"));
  m.apps = {{1, "Z", "z", "/Applications/AntiZoom.app", false}, {30, "Z", "z", "/opt/Zoom.app", false}};
  EXPECT_EQ(only(cpuHogs(m, around)).icon, "/opt/Zoom.app");
}

TEST_F(CpuHogs, ABackgroundProcess) {
  add(m, 40, 1, {"/opt/agentd", "--serve", std::string(400, 'u')}).cpu = 2;
  const Finding found = only(cpuHogs(m, around));
  EXPECT_EQ(found.evidence, "A background process. No app or terminal started it.\nCommand: agentd --serve " +
                                std::string(285, 'u') + "\nPath: /usr/bin/agentd");
  EXPECT_EQ(std::tie(found.title, found.subject, found.summary, found.icon),
            std::tuple("A background process is busy", "agentd", "Its name is “agentd”.", "gearshape"));
}

TEST_F(CpuHogs, CommandsAreShortenedAfterSixtyCharacters) {
  add(m, 40, 1, {"x", "ü" + std::string(57, 'y')}).cpu = 1;
  const std::string name = "Its name is “x ü" + std::string(56, 'y');
  EXPECT_EQ(only(cpuHogs(m, around)).detail, name + "y”. It runs 1 process.");
  m.procs[40].args[1] += 'y';
  EXPECT_EQ(only(cpuHogs(m, around)).detail, name + "…”. It runs 1 process.");
}

TEST_F(CpuHogs, WorkThatSomebodyStarted) {
  add(m, 2, 1, {"-zsh"});
  Proc& npm = add(m, 20, 2, {"node", "npm\ntest"}, 43);
  npm.cpu = 2;
  npm.cwd = "/Users/x/shop/web";
  const Finding mine = only(cpuHogs(m, around));
  EXPECT_EQ(mine.title + ": " + mine.subject, "You are running tests: your tests");

  around.present = {"/Users/x/shop/.git"};
  around.repositories["/Users/x/shop"] = {"shop", "fix/tax", "Round", "1 day ago", true, {}};
  around.sessions[2] = {.title = "Taxes", .pr = 7, .prRepo = "o/r"};
  m.procs[2].args = {"claude"};
  npm.args = {"node", "work.js"};
  const Finding claudes = only(cpuHogs(m, around));
  EXPECT_EQ(claudes.title + ": " + claudes.subject,
            "Claude Code is running a command: a command from Claude Code");
  EXPECT_EQ(
      claudes.detail,
      "Claude Code started it 43 seconds ago, in a session about “Taxes” (pull request #7). The command "
      "is “node work.js”. Project: shop, branch fix/tax. It stops when the command ends.");
  EXPECT_EQ(claudes.evidence,
            "Command: node work.js\nStarted by: Claude Code\nClaude Code session title: Taxes\n"
            "Git repo shop, branch fix/tax (a separate copy of the repo). Last commit: Round");
}

using Caffeinates = RuleTest;

TEST_F(Caffeinates, OnlyEndlessOnes) {
  const std::tuple<std::vector<std::string>, double, std::uint32_t, bool> cases[] = {
      {{"/usr/bin/caffeinate", "-d"}, 3'601, myUid, true},
      {{"caffeinate", "-d"}, 3'600, myUid, false},
      {{"caffeinate", "-i", "-m", "-dsu"}, 3'601, myUid, true},
      {{}, 3'601, myUid, true},
      {{"caffeinate", "-i"}, 3'601, 0, false},
      {{"caffeinate", "-t", "3600"}, 3'601, myUid, false},
      {{"caffeinate", "-it300"}, 3'601, myUid, false},
      {{"caffeinate", "-w", "123"}, 3'601, myUid, false},
      {{"caffeinate", "-i", "make"}, 3'601, myUid, false},
      {{"caffeinated", "-i"}, 3'601, myUid, false},
  };
  for (const auto& [args, age, uid, found] : cases) {
    m = machine();
    Proc& proc = add(m, 30, 1, args, age);
    proc.path = "/usr/bin/caffeinate";
    proc.uid = uid;
    EXPECT_THAT(caffeinates(m, {}, around), SizeIs(found ? 1 : 0)) << testing::PrintToString(args) << age;
  }
}

TEST_F(Caffeinates, SayWhoRanThemAndWhatStaysAwake) {
  addApp(m, 2, "iTerm");
  Proc& proc = add(m, 30, 1, {"caffeinate", "-i"}, 7'200);
  const Finding found = only(caffeinates(m, {30}, around));
  EXPECT_EQ(found.detail,
            "A tool “caffeinate -i” on second 1789992800. It keeps the Mac awake until you stop it.");
  EXPECT_EQ(found.summary, "A tool “caffeinate” 2 hours ago. It has no time limit.");
  EXPECT_EQ(found.actions.front(), (Action{"Force quit", {Signal{30, 9, proc.started}}}));
  proc.args = {"caffeinate", "-i", "-s"};
  EXPECT_THAT(only(caffeinates(m, {}, around)).detail, HasSubstr("keeps the Mac awake until"));
  proc.args = {"caffeinate", "-d"};
  proc.ppid = 2;
  EXPECT_THAT(only(caffeinates(m, {}, around)).detail, HasSubstr("keeps the Mac and the screen awake"));
  EXPECT_THAT(only(caffeinates(m, {}, around)).summary, StartsWith("iTerm ran “caffeinate”"));
}

}  // namespace
}  // namespace tarnwick
