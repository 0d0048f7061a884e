#include "tests/support/machines.h"

namespace {

using CpuHogs = RuleTest;

std::string told(const Finding& f) {
  return f.id + ": " + f.title + ". " + f.detail + " " + f.summary + " " + f.icon;
}

TEST_F(CpuHogs, LeaveWhatOtherRulesReport) {
  addApp(m, 10, "Vivaldi");
  addAll(
      m,
      "11 1 /usr/libexec/mdworker, 4242 1 myself, 81 1 vm, 63 1 page, 90 1 containerd-shim, 91 90 postgres");
  addApp(m, 80, "Docker");
  m.procs[81].path = "/x/com.apple.Virtualization.VirtualMachine";
  m.procs[63].path = "/x/com.apple.WebKit.GPU";
  for (auto& [pid, proc] : m.procs) proc.cpu = pid == 80 || pid == 90 ? 0 : 3;
  EXPECT_THAT(ids(cpuHogs(m, around)), ElementsAre("cpu:pid:63", "cpu:pid:90"));
  m.procs[91].inContainer = true;
  addApp(m, 62, "Safari");
  EXPECT_THAT(ids(cpuHogs(m, around)), ElementsAre("cpu:pid:90"))
      << "the page is Safari's now; containers are the machine's, whose card stands for them";
  m.procs.erase(80);
  EXPECT_THAT(ids(cpuHogs(m, around)), ElementsAre("cpu:pid:81"))
      << "some other program's machine, and containers have a card of their own";
}

TEST_F(CpuHogs, AddUpToOneCore) {
  addAll(m, "2 1 -zsh, 20 2 make, 21 20 cc, 22 20 cc");
  m.procs[20].cpu = 0.5;
  m.procs[21].cpu = 0.49;
  m.procs[22].cpu = 0.01;  // idle: does not count
  EXPECT_THAT(cpuHogs(m, around), IsEmpty());
  m.procs[21].cpu = 0.5;
  EXPECT_THAT(ids(cpuHogs(m, around)), ElementsAre("cpu:pid:20"));
}

TEST_F(CpuHogs, AnApplication) {
  addApp(m, 30, "Zoom").cpu = 0.6;
  addApp(m, 31, "Zoom").cpu = 0.6;
  EXPECT_EQ(told(only(cpuHogs(m, around))),
            "cpu:Zoom: Zoom is busy. It runs 2 processes. It takes processor time from your other apps. app");
  m.apps = {{1, "Z", "z", "/Applications/AntiZoom.app", false}, {30, "Z", "z", "/opt/Zoom.app", false}};
  EXPECT_EQ(only(cpuHogs(m, around)).icon, "/opt/Zoom.app");
}

TEST_F(CpuHogs, ABackgroundProcessWhoseCommandIsShortenedAfterSixtyCharacters) {
  Proc& agent = add(m, 40, 1, {"/opt/agentd", "--serve", std::string(400, 'u')});
  agent.cpu = 2;
  EXPECT_EQ(only(cpuHogs(m, around)).evidence,
            "A background process. No app or terminal started it.\nCommand: agentd --serve " +
                std::string(285, 'u') + "\nPath: /usr/bin/agentd");
  agent.args = {"x", "ü" + std::string(57, 'y')};
  const std::string name =
      "cpu:pid:40: A background process is busy. Its name is “x ü" + std::string(56, 'y');
  const std::string rest = "”. It runs 1 process. Its name is “x”. gearshape";
  EXPECT_EQ(told(only(cpuHogs(m, around))), name + "y" + rest);
  agent.args[1] += 'y';
  EXPECT_EQ(told(only(cpuHogs(m, around))), name + "…" + rest);
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
      "Claude Code started it 43 seconds ago, in a session about “Taxes” (pull request #7). The command is “node work.js”. Project: shop, branch fix/tax. It stops when the command ends.");
  EXPECT_EQ(
      claudes.evidence,
      "Command: node work.js\nStarted by: Claude Code\nClaude Code session title: Taxes\nGit repo shop, branch fix/tax (a separate copy of the repo). Last commit: Round");
}

using Caffeinates = RuleTest;

TEST_F(Caffeinates, OnlyEndlessOnes) {
  const auto count = [&](const Strings& args, double age = 3'601, std::uint32_t uid = myUid) {
    m = machine();
    Proc& proc = add(m, 30, 1, args, age);
    proc.path = "/usr/bin/caffeinate";
    proc.uid = uid;
    return caffeinates(m, {}, around).size();
  };
  for (const Strings& endless :
       {Strings{"/usr/bin/caffeinate", "-d"}, {"caffeinate", "-i", "-m", "-dsu"}, {}})
    EXPECT_EQ(count(endless), 1U) << testing::PrintToString(endless);
  for (const Strings& other : {Strings{"caffeinate", "-t", "3600"},
                               {"caffeinate", "-it300"},
                               {"caffeinate", "-w", "123"},
                               {"caffeinate", "-i", "make"},
                               {"caffeinated", "-i"}})
    EXPECT_EQ(count(other), 0U) << testing::PrintToString(other);
  EXPECT_EQ(count({"caffeinate", "-d"}, 3'600), 0U);
  EXPECT_EQ(count({"caffeinate", "-i"}, 3'601, 0), 0U);
}

TEST_F(Caffeinates, SayWhoRanThemAndWhatStaysAwake) {
  addApp(m, 2, "iTerm");
  Proc& proc = add(m, 30, 1, {"caffeinate", "-i"}, 7'200);
  const Finding found = only(caffeinates(m, {30}, around));
  EXPECT_EQ(
      found.detail + " " + found.summary,
      "A tool “caffeinate -i” on second 1789992800. It keeps the Mac awake until you stop it. A tool “caffeinate” 2 hours ago. It has no time limit.");
  EXPECT_EQ(found.actions.front(), (Action{"Force quit", {Signal{30, 9, proc.started}}}));
  proc.args = {"caffeinate", "-d"};
  proc.ppid = 2;
  EXPECT_THAT(only(caffeinates(m, {}, around)).detail, HasSubstr("keeps the Mac and the screen awake"));
  EXPECT_THAT(only(caffeinates(m, {}, around)).summary, StartsWith("iTerm ran “caffeinate”"));
}

}  // namespace
