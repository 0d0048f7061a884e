#include <gmock/gmock.h>

#include "diagnosis/detect.h"
#include "tests/support/fake_surroundings.h"
#include "tests/support/machines.h"

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<std::string> ids(const std::vector<Finding>& found) {
  std::vector<std::string> all;
  all.reserve(found.size());
  for (const Finding& finding : found) all.push_back(finding.id);
  return all;
}

std::string repeated(const char* character, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += character;
  return text;
}

TEST(CpuHogs, LeaveWhatOtherRulesReport) {
  FakeSurroundings around;
  Snapshot m = machine();
  addApp(m, 10, "Vivaldi").cpu = 3;
  add(m, 11, 1, {"/usr/libexec/mdworker"}).cpu = 3;
  add(m, around.who.pid, 1, {"me"}).cpu = 3;
  addApp(m, 80, "Docker");
  Proc& vm = add(m, 81, 1, {"vm"});
  vm.path = "/x/com.apple.Virtualization.VirtualMachine";
  vm.cpu = 3;
  Proc& page = add(m, 63, 1, {"page"});
  page.path = "/x/com.apple.WebKit.GPU";
  page.cpu = 3;
  EXPECT_THAT(ids(cpuHogs(m, around)), ElementsAre("cpu:pid:63"));
  addApp(m, 62, "Safari");
  EXPECT_THAT(cpuHogs(m, around), IsEmpty()) << "the page is Safari's now";
  m.procs.erase(80);
  EXPECT_THAT(ids(cpuHogs(m, around)), ElementsAre("cpu:pid:81")) << "some other program's machine";
}

TEST(CpuHogs, AddUpToOneCore) {
  FakeSurroundings around;
  Snapshot m = machine();
  add(m, 2, 1, {"-zsh"});
  add(m, 20, 2, {"make"}).cpu = 0.5;
  add(m, 21, 20, {"cc"}).cpu = 0.49;
  add(m, 22, 20, {"cc"}).cpu = 0.01;  // idle: does not count
  EXPECT_THAT(cpuHogs(m, around), IsEmpty());
  m.procs[21].cpu = 0.5;
  const std::vector<Finding> found = cpuHogs(m, around);
  ASSERT_THAT(ids(found), ElementsAre("cpu:pid:20"));
  EXPECT_EQ(found.front().metric, "10% CPU");
  EXPECT_DOUBLE_EQ(found.front().impact, 0.1);
}

TEST(CpuHogs, AnApplication) {
  FakeSurroundings around;
  Snapshot m = machine();
  addApp(m, 30, "Zoom").cpu = 0.6;
  addApp(m, 31, "Zoom").cpu = 0.6;
  const Finding expected{.id = "cpu:Zoom",
                         .bucket = Bucket::now,
                         .title = "Zoom is busy",
                         .detail = "It runs 2 processes.",
                         .subject = "Zoom",
                         .summary = "It takes processor time from your other apps.",
                         .metric = "12% CPU",
                         .icon = "app",
                         .impact = 0.12};
  EXPECT_THAT(cpuHogs(m, around), ElementsAre(expected));
  m.apps = {{1, "Z", "z", "/Applications/AntiZoom.app", false}, {30, "Z", "z", "/opt/Zoom.app", false}};
  EXPECT_EQ(cpuHogs(m, around).front().icon, "/opt/Zoom.app");
}

TEST(CpuHogs, ABackgroundProcess) {
  FakeSurroundings around;
  Snapshot m = machine();
  Proc& proc = add(m, 40, 1, {"/opt/agentd", "--serve", repeated("ü", 400)});
  proc.cpu = 2;
  EXPECT_THAT(
      cpuHogs(m, around),
      ElementsAre(Finding{
          .id = "cpu:pid:40",
          .bucket = Bucket::now,
          .title = "A background process is busy",
          .detail = "Its name is “agentd --serve " + repeated("ü", 44) + "…”. It runs 1 process.",
          .evidence = "A background process. No app or terminal started it.\nCommand: agentd --serve " +
                      repeated("ü", 285) + "\nPath: /usr/bin/agentd",
          .subject = "agentd",
          .summary = "Its name is “agentd”.",
          .metric = "20% CPU",
          .icon = "gearshape",
          .impact = 0.2}));
}

TEST(CpuHogs, CommandsAreShortenedAfterSixtyCharacters) {
  FakeSurroundings around;
  Snapshot m = machine();
  Proc& proc = add(m, 40, 1, {"x", std::string(58, 'y')});
  proc.cpu = 1;
  EXPECT_EQ(cpuHogs(m, around).front().detail,
            "Its name is “x " + std::string(58, 'y') + "”. It runs 1 process.");
  proc.args[1] += 'y';
  EXPECT_EQ(cpuHogs(m, around).front().detail,
            "Its name is “x " + std::string(57, 'y') + "…”. It runs 1 process.");
}

TEST(CpuHogs, WorkThatSomebodyStarted) {
  FakeSurroundings around;
  Snapshot m = machine();
  add(m, 2, 1, {"-zsh"});
  Proc& npm = add(m, 20, 2, {"node", "npm\ntest"}, 43);
  npm.cpu = 2;
  npm.cwd = "/Users/x/shop/web";
  Finding expected{
      .id = "cpu:pid:20",
      .bucket = Bucket::now,
      .title = "You are running tests",
      .detail =
          "You started it in a terminal 43 seconds ago. The command is “node npm test”. It stops "
          "when the command ends.",
      .evidence = "Command: node npm test\nStarted by: you",
      .subject = "your tests",
      .summary = "“node npm test” started 43 seconds ago. It stops when it ends.",
      .metric = "20% CPU",
      .icon = "terminal",
      .impact = 0.2};
  EXPECT_THAT(cpuHogs(m, around), ElementsAre(expected));

  around.present = {"/Users/x/shop/.git"};
  around.repositories["/Users/x/shop"] = {"shop", "fix/tax", "Round", "1 day ago", true, {}};
  around.sessions[2] = {.title = "Taxes", .pr = 7, .prRepo = "o/r"};
  m.procs[2].args = {"claude"};
  npm.args = {"node", "work.js"};
  expected.title = "Claude Code is running a command";
  expected.detail =
      "Claude Code started it 43 seconds ago, in a session about “Taxes” (pull request #7). The command "
      "is “node work.js”. Project: shop, branch fix/tax. It stops when the command ends.";
  expected.evidence =
      "Command: node work.js\nStarted by: Claude Code\nClaude Code session title: Taxes\n"
      "Git repo shop, branch fix/tax (a separate copy of the repo). Last commit: Round";
  expected.subject = "a command from Claude Code";
  expected.summary = "“node work.js” started 43 seconds ago. It stops when it ends.";
  EXPECT_THAT(cpuHogs(m, around), ElementsAre(expected));
}

TEST(Caffeinates, OnlyEndlessOnes) {
  FakeSurroundings around;
  const struct {
    std::vector<std::string> args;
    double age;
    std::uint32_t uid;
    bool found;
  } cases[] = {
      {{"/usr/bin/caffeinate", "-d"}, 3'601, myUid, true},
      {{"caffeinate", "-d"}, 3'600, myUid, false},
      {{"caffeinate", "-i", "-m", "-dsu"}, 3'601, myUid, true},
      {{"caffeinate"}, 3'601, myUid, true},
      {{}, 3'601, myUid, true},
      {{"caffeinate", "-i"}, 3'601, 0, false},
      {{"caffeinate", "-t", "3600"}, 3'601, myUid, false},
      {{"caffeinate", "-it300"}, 3'601, myUid, false},
      {{"caffeinate", "-w", "123"}, 3'601, myUid, false},
      {{"caffeinate", "-iw"}, 3'601, myUid, false},
      {{"caffeinate", "-i", "make"}, 3'601, myUid, false},
      {{"caffeinate", "-i", ""}, 3'601, myUid, false},
      {{"caffeinated", "-i"}, 3'601, myUid, false},
  };
  for (const auto& [args, age, uid, found] : cases) {
    Snapshot m = machine();
    Proc& proc = add(m, 30, 1, args, age);
    proc.path = "/usr/bin/caffeinate";
    proc.uid = uid;
    EXPECT_THAT(caffeinates(m, {}, around), SizeIs(found ? 1 : 0)) << testing::PrintToString(args) << age;
  }
}

TEST(Caffeinates, TheWholeCard) {
  FakeSurroundings around;
  Snapshot m = machine();
  add(m, 2, 1, {"-zsh"});
  Proc& proc = add(m, 30, 2, {"caffeinate", "-d", "-s"}, 7'200);
  Finding expected{
      .id = "caffeinate:30",
      .bucket = Bucket::leftovers,
      .title = "Your Mac is not allowed to sleep",
      .detail =
          "You ran “caffeinate -d -s” on second 1789992800. It keeps the Mac and the screen awake "
          "until you stop it.",
      .actions = {{"Let the Mac sleep", {Signal{30, 15, proc.started}}}},
      .subject = "caffeinate",
      .summary = "You ran “caffeinate” 2 hours ago. It has no time limit.",
      .icon = "cup.and.saucer",
      .impact = 0.001};
  EXPECT_THAT(caffeinates(m, {}, around), ElementsAre(expected));

  proc.args = {"caffeinate", "-i"};
  proc.ppid = 1;
  expected.detail = "A tool “caffeinate -i” on second 1789992800. It keeps the Mac awake until you stop it.";
  expected.summary = "A tool “caffeinate” 2 hours ago. It has no time limit.";
  expected.actions = {{"Force quit", {Signal{30, 9, proc.started}}}};
  EXPECT_THAT(caffeinates(m, {30}, around), ElementsAre(expected));

  addApp(m, 2, "iTerm");
  proc.ppid = 2;
  EXPECT_EQ(caffeinates(m, {}, around).front().summary,
            "iTerm ran “caffeinate” 2 hours ago. It has no time limit.");
}

}  // namespace
}  // namespace tarnwick
