#include "app/remedies/fix_execution.h"

#include <linux/sched.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <deque>
#include <future>

#include "app/remedies/linux/detached_program.h"
#include "app/remedies/linux/linux_signals.h"
#include "app/remedies/linux/linux_targets.h"
#include "context/linux/linux_browsers.h"
#include "sampling/tools/posix/posix_tool_runner.h"
#include "tests/support/fake_fix_targets.h"
#include "tests/support/fake_transport.h"
#include "tests/support/linux/found_processes.h"
#include "tests/support/posix/child_process.h"

namespace {

using Kind = SignalOutcome::Kind;
using Road = LinuxSignals::Road;

constexpr unsigned nobody = 65'534;

struct LinuxSignalsTest : testing::TestWithParam<Road> {
  Kind send(const Signal& signal) { return signals_.send(signal).kind; }

  FoundProcesses found_;
  LinuxSignals signals_{::getuid(), found_.clock(), GetParam()};
};

INSTANTIATE_TEST_SUITE_P(BothRoads, LinuxSignalsTest,
                         testing::Values(Road::handleWherePossible, Road::pidOnly));

TEST_P(LinuxSignalsTest, ReachesTheProcessThatWasFoundAndRefusesAnotherStartTimeAndPidsOfNoSingleProcess) {
  ChildProcess child;
  const Signal right = found_.signalTo(child.pid());
  for (const double by : {-1.0, 1.0, -0.001})
    EXPECT_EQ(send({right.pid, right.number, right.started + Seconds{by}}), Kind::refused) << by;
  for (const Pid pid : {1, 0, -1, -::getpgrp()}) EXPECT_EQ(send({pid, 0, {}}), Kind::refused) << pid;
  EXPECT_EQ(signals_.started(child.pid()), right.started);
  const SignalOutcome outcome = signals_.send({right.pid, 4711, right.started});
  EXPECT_EQ(std::tie(outcome.kind, outcome.error), std::tuple(Kind::failed, "Invalid argument"));
  EXPECT_EQ(send(right), Kind::sent);
  EXPECT_EQ(child.endedBy(), SIGTERM);
}

TEST_P(LinuxSignalsTest, RefusesWhatHasEnded) {
  ChildProcess child;
  const Signal right = found_.signalTo(child.pid());
  ::kill(child.pid(), SIGKILL);
  child.waitUntilZombie();
  EXPECT_EQ(send(right), Kind::refused) << "ended, but not reaped";
  EXPECT_EQ(child.endedBy(), SIGKILL);
  EXPECT_EQ(send(right), Kind::refused) << "gone";
  EXPECT_EQ(signals_.started(right.pid), std::nullopt);
}

TEST_P(LinuxSignalsTest, RefusesAnotherUsersProcess) {
  if (::getuid() != 0) GTEST_SKIP() << "starting a process of another user takes root";
  ChildProcess child([] {
    if (::setuid(nobody) != 0) ::_exit(1);
  });
  EXPECT_EQ(send(FoundProcesses(nobody).signalTo(child.pid())), Kind::refused);
  EXPECT_EQ(child.killed(), SIGKILL);
}

// A session whose applications the test names; `onAsked` runs before each answer.
struct NamedApps final : Workspace {
  std::vector<RunningApp> apps;
  std::function<void()> onAsked = [] {};
  std::vector<RunningApp> runningApps() override {
    onAsked();
    return apps;
  }
};

// Table and remedy reckon with one clock: neither a clock that was set since the check nor the next check
// makes a stranger of the process.
TEST(LinuxSignals, StopsAfterTheClockWasSet) {
  ChildProcess child;
  LinuxProcessSource source({.uid = ::getuid()});
  ProcClock clock = source.clock();
  const LinuxSignals signals(::getuid(), clock);
  const auto before = signals.started(child.pid()).value_or(Timestamp());
  clock.bootTime += 46'800;  // as the next check reads it
  EXPECT_EQ(signals.send({child.pid(), SIGTERM, before}).kind, SignalOutcome::Kind::refused);
  const auto after = signals.started(child.pid()).value_or(Timestamp());
  EXPECT_EQ(secondsBetween(before, after), 46'800);
  EXPECT_EQ(signals.send({child.pid(), SIGTERM, after}).kind, SignalOutcome::Kind::sent);
  EXPECT_EQ(child.endedBy(), SIGTERM);
}

struct LinuxTargetsTest : testing::Test {
  RunningApp app(const ChildProcess& child, const std::string& id) {
    return {child.pid(), id, id, "/" + id, false};
  }
  Text carryOut(const Fix& fix) { return apply(fix, {system_, docker_, browsers_, tools_, places_}); }

  FakeTransport engine_;
  const Text done;
  Docker docker_{engine_, {"/engine.sock"}};
  LinuxBrowsers browsers_;
  PosixToolRunner tools_;
  ToolPlaces places_{ToolCandidates{}};
  NamedApps session_;
  FoundProcesses found_;
  DirectFiles files_;
  DesktopSession desktop_;
  LinuxTargets system_{session_, LinuxSignals(::getuid(), found_.clock()), files_,
                       [this] { return desktop_; }};
};

TEST_F(LinuxTargetsTest, QuitAsksEveryUnitOfThatApplicationUnlessItIsNoLongerThere) {
  ChildProcess first;
  ChildProcess second;
  ChildProcess other;
  session_.apps = {app(first, "org.example.Mail"), app(other, "org.example.Mailer"),
                   app(second, "org.example.Mail")};
  for (const char* id : {"org.example.Mail", "org.example.Gone"}) EXPECT_EQ(carryOut({QuitApp{id}}), done);
  EXPECT_EQ(std::pair(first.endedBy(), second.endedBy()), std::pair(SIGTERM, SIGTERM));
  int asked = 0;
  session_.onAsked = [&] {
    if (++asked == 2) session_.apps.clear();
  };
  EXPECT_EQ(carryOut({QuitApp{"org.example.Mailer"}}), done);
  EXPECT_EQ(std::pair(asked, other.killed()), std::pair(2, SIGKILL));
}

TEST_F(LinuxTargetsTest, WhatLinuxLacksIsRefused) {
  for (const Fix& fix :
       {Fix{SimShutdown{"U"}}, {CloseDuplicateTabs{"b"}}, {OpenTab{"b", "u"}}, {AskAutomation{"b"}}})
    EXPECT_NE(carryOut(fix), done);
  EXPECT_FALSE(browsers_.access("b") != Access::unknown || browsers_.readTabs("b"));
}

// A session with stand-ins for the desktop's programs, which write down how they were started.
struct SettingsTest : LinuxTargetsTest {
  SettingsTest() {
    desktop_ = {
        .hasDisplay = true, .home = folder.at("o'neil \"x\" $(y)"), .programFolders = {folder.at("b in")}};
    desktop_.autostart = desktop_.home + "/start";
    std::filesystem::create_directories(desktop_.autostart);
  }

  // The started program's name and its words, one a line and "~" for the home folder; else the message.
  std::string opened(const std::string& pane, const Strings& programs) {
    for (const std::string& name : programs)
      folder.script("b in/" + name,
                    "printf '%s\n' \"${0##*/}\" \"$@\" >'" + said + "2'; mv '" + said + "2' '" + said + "'");
    if (const Text message = carryOut({OpenSettings{pane}})) return *message;
    EXPECT_TRUE(waitUntil([&] { return std::filesystem::exists(said); }));
    std::string text = textOfFile(said);
    if (const auto at = text.find(desktop_.home); at != std::string::npos)
      text.replace(at, desktop_.home.size(), "~");
    for (const char* name : {"said", "b in"}) std::filesystem::remove_all(folder.at(name));
    return text;
  }

  TempFolder folder;
  const std::string said = folder.at("said");
};

TEST_F(SettingsTest, APaneOpensTheDesktopsOwnPlaceElseOneThatServesAnywhere) {
  const std::string none = "Not done: System Settings did not open.";
  const std::string login = "com.apple.LoginItems-Settings.extension";
  const std::string disk = "com.apple.settings.Storage";
  const std::tuple<Strings, std::string, Strings, std::string> rows[] = {
      {{"ubuntu", "GNOME"}, login, {"gnome-control-center", "gnome-tweaks"}, "gnome-tweaks\n"},
      {{"GNOME"}, login, {"systemsettings", "gnome-control-center"}, "gnome-control-center\napplications\n"},
      {{"Gnome"}, disk, {"filelight", "baobab"}, "baobab\n"},
      {{"KDE"}, login, {"systemsettings5", "systemsettings"}, "systemsettings\nkcm_autostart\n"},
      {{"KDE"}, login, {"systemsettings5", "xdg-open"}, "systemsettings5\nkcm_autostart\n"},
      {{"KDE"}, disk, {"baobab", "org.kde.filelight"}, "org.kde.filelight\n"},
      {{"XFCE"}, login, {"gnome-session-properties", "xfce4-session-settings"}, "xfce4-session-settings\n"},
      {{"XFCE"}, disk, {"gnome-disks", "baobab"}, "baobab\n"},
      {{"sway"}, login, {"gnome-control-center", "xdg-open"}, "xdg-open\n~/start\n"},
      {{}, disk, {"xdg-open"}, "xdg-open\n~\n"},
      {{"GNOME"}, disk, {}, none},
      {{"GNOME"}, "com.apple.Spotlight-Settings.extension", {"gnome-control-center", "xdg-open"}, none}};
  for (const auto& [desktops, pane, programs, expected] : rows) {
    desktop_.desktops = desktops;
    EXPECT_EQ(opened(pane, programs), expected);
  }
  std::filesystem::permissions(folder.write("b in/baobab", "no program"), std::filesystem::perms::owner_all);
  EXPECT_EQ(opened(disk, {"filelight"}), "filelight\n") << "the system starts no such file";
  desktop_.autostart = folder.at("nothing");
  EXPECT_EQ(opened(login, {"xdg-open"}), none) << "there is no such folder";
  desktop_.hasDisplay = false;
  EXPECT_EQ(opened(disk, {"baobab"}), none);
}

TEST_F(SettingsTest, WhatWasOpenedBelongsToNobodyAndHoldsNothingOfOurs) {
  ::dup2(STDERR_FILENO, 77);
  ::signal(SIGPIPE, SIG_IGN);
  const std::array<unsigned long, 4> ignored{1};  // of the C library's own, as some starters do
  ASSERT_EQ(::syscall(SYS_rt_sigaction, 33, ignored.data(), nullptr, 8), 0);
  const std::string program = folder.script(
      "p",
      "told=$(pwd; readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/2; [ -e /proc/$$/fd/77 ] && echo held\n"
      "grep -E '^Sig(Blk|Ign)' /proc/self/status; cut -d ' ' -f 4,6 /proc/$$/stat)\n"
      "echo \"$told\" >" +
          said + "2; mv " + said + "2 " + said);
  EXPECT_TRUE(startDetached(program, {}));
  ::signal(SIGPIPE, SIG_DFL);
  ::close(77);
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "nobody is left to wait for";
  ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(said); }));
  std::string text = textOfFile(said);
  const std::string masks =
      "/\n/dev/null\n/dev/null\n/dev/null\nSigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n";
  ASSERT_THAT(text, StartsWith(masks));
  int parent = 0;
  int session = 0;
  std::istringstream(text.substr(masks.size())) >> parent >> session;
  EXPECT_NE(parent, ::getpid());
  EXPECT_NE(session, ::getsid(0));
  EXPECT_FALSE(startDetached(folder.at("nothing"), {}));
}

// Remedies while processes come and go under the same pids. TARNWICK_STORM_ROUNDS sets how often.
struct RealSignals final : FakeFixTargets {
  explicit RealSignals(const LinuxSignals& real) : signals(real) {}
  SignalOutcome signal(const Signal& signal) override { return signals.send(signal); }
  const LinuxSignals& signals;
};

// A child with a pid of our choice; -1 when the kernel does not give it.
Pid spawnAs(Pid pid) {
  clone_args arguments{};
  arguments.exit_signal = SIGCHLD;
  arguments.set_tid = reinterpret_cast<std::uint64_t>(&pid);
  arguments.set_tid_size = 1;
  const long child = ::syscall(SYS_clone3, &arguments, sizeof arguments);
  if (child == 0) {
    for (;;) ::pause();
  }
  return static_cast<Pid>(child);
}

bool pidsCanBeChosen() {
  const Pid free = ChildProcess().pid();
  const Pid chosen = spawnAs(free);
  if (chosen == free) ChildProcess::adopt(chosen).killed();
  return chosen == free;
}

// Processes are found, then end and are replaced by others with the same pid: before the remedy, while it
// begins, or whenever the machine gets to it. The remedy may reach the one that was found or nobody.
TEST(RemedyStorm, NoOtherProcessIsEverSignalled) {
  if (!pidsCanBeChosen()) GTEST_SKIP() << "choosing a pid takes root and a kernel from 5.5 on";
  FoundProcesses found;
  const LinuxSignals signals(::getuid(), found.clock());
  RealSignals targets(signals);
  constexpr int batchSize = 500;
  enum Timing : std::size_t { before, together, whenever, timings };
  int refused = 0;
  int successors = 0;
  const char* rounds = std::getenv("TARNWICK_STORM_ROUNDS");
  for (int left = rounds == nullptr ? 1'000 : std::atoi(rounds); left > 0; left -= batchSize) {
    std::deque<ChildProcess> children;
    std::vector<Signal> findings;
    for (int i = 0; i < std::min(left, batchSize); ++i)
      findings.push_back(found.signalTo(children.emplace_back().pid()));
    // Start times are whole seconds: a successor must not start within the second of the one it replaces.
    ASSERT_TRUE(
        waitUntil([&] { return found.signalTo(ChildProcess().pid()).started > findings.back().started; }));
    for (std::size_t i = 0; i < findings.size(); ++i) {
      const std::size_t timing = i % timings;
      std::atomic<bool> ending{false};
      // Its pid, or -1 when somebody was faster.
      auto successor = std::async(std::launch::async, [&] {
        ending.store(true);
        children[i].killed();
        return spawnAs(children[i].pid());
      });
      if (timing == before) successor.wait();
      while (timing == together && !ending.load()) {
      }
      const Text message = apply({findings[i]}, targets.targets());
      const Pid pid = successor.get();
      if (pid == findings[i].pid) {
        ++successors;
        ASSERT_EQ(ChildProcess::adopt(pid).killed(), SIGKILL) << "a successor was signalled";
      }
      ASSERT_TRUE(message || timing != before) << "nobody was left to be signalled";
      if (message) ++refused;
    }
  }
  EXPECT_GT(successors, 0);
  EXPECT_GT(refused, 0);
}

}  // namespace
