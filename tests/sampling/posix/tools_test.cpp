#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "sampling/tools/limited_tool_runner.h"
#include "sampling/tools/posix/posix_tool_runner.h"
#include "sampling/tools/tool_places.h"
#include "tests/support/fake_clock.h"
#include "tests/support/recording_tool_runner.h"

namespace {

struct ToolPlacesTest : testing::Test {
  void SetUp() override { ::unsetenv("TARNWICK_NO_TOOLS"); }
  void TearDown() override { SetUp(); }

  TempFolder folder_;
  DirectFiles direct;
};

TEST_F(ToolPlacesTest, TakesTheFirstExecutableFileAndKeepsTheAnswer) {
  const std::string plain = folder_.write("plain", "no program");
  const std::string first = folder_.script("first", "exit 0");
  const std::string link = folder_.at("link");
  std::filesystem::create_symlink(folder_.script("second", "exit 0"), link);
  EXPECT_EQ(executable({}, direct), std::nullopt);
  EXPECT_EQ(executable({plain, folder_.path(), first, link}, direct), first);
  EXPECT_EQ(executable({link, first}, direct), link);

  ToolPlaces places({.git = {first}, .gh = {folder_.at("gh")}});
  for (int look = 0; look < 2; ++look) {
    EXPECT_EQ(places.gitBin(), first);
    EXPECT_EQ(places.ghBin(), std::nullopt);
    EXPECT_EQ(places.simctlBin(), std::nullopt);
    folder_.script("gh", "exit 0");
    std::filesystem::remove(first);
  }
}

TEST_F(ToolPlacesTest, NoToolExistsWhileToolsAreOff) {
  const std::string tool = folder_.script("bin/gh", "exit 0");
  EXPECT_EQ(ToolPlaces(folder_.path()).ghBin(), tool) << "the user's own folder comes first";
  for (const char* value : {"", "0"}) {
    ::setenv("TARNWICK_NO_TOOLS", value, 1);
    EXPECT_EQ(executable({tool}, direct), std::nullopt) << value;
    EXPECT_EQ(ToolPlaces(folder_.path()).ghBin(), std::nullopt) << value;
  }
}

struct ToolRunnerTest : testing::Test {
  // Every test must leave nothing to wait for, neither running nor dead.
  void TearDown() override {
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
  }

  ToolResult run(const std::string& body, const ToolOptions& options = {}) {
    auto tool = runner_.start(folder_.script("tool", body), {"one", "two words"}, options);
    return tool == nullptr ? ToolResult{"not started", -2} : tool->result();
  }

  TempFolder folder_;
  PosixToolRunner runner_;
};

TEST_F(ToolRunnerTest, TakesStandardOutputAndTheExitStatus) {
  const std::tuple<std::string, std::string, int> cases[] = {
      {"printf '%s|' \"$@\"", "one|two words|", 0},
      {"echo seen; echo unseen >&2; exit 3", "seen\n", 3},
      {"printf 'a\\377'", "a\xEF\xBF\xBD", 0},
      {"echo last words; kill -KILL $$", "last words\n", -1},
      {"exec 1>&-; sleep 0.05; exit 255", "", 255},
      {"head -c 300000 /dev/zero | tr '\\0' x", std::string(300'000, 'x'), 0}};  // more than a pipe holds
  for (const auto& [body, output, exitStatus] : cases) {
    const ToolResult result = run(body);
    EXPECT_EQ(std::tie(result.output, result.exitStatus), std::tie(output, exitStatus)) << body;
  }
}

TEST_F(ToolRunnerTest, WhatCannotBeLaunchedIsAbsent) {
  folder_.script("broken", "");
  folder_.write("broken", "#!/no/such/interpreter\n");
  folder_.write("plain", "#!/bin/sh\necho never\n");
  for (const char* name : {"missing", "plain", "broken", ""})
    EXPECT_EQ(runner_.start(folder_.at(name), {}), nullptr) << name;
  EXPECT_EQ(ToolRunner::finish(nullptr), "");
  runner_.endAll();
  EXPECT_EQ(runner_.start("/bin/sh", {"-c", "exit"}), nullptr) << "after the end";
}

// Each waits for the other's mark: one after the other, neither would ever end.
TEST_F(ToolRunnerTest, StartedToolsRunSideBySide) {
  const std::string script =
      folder_.script("tool", "touch \"$1\"; while [ ! -e \"$2\" ]; do sleep 0.01; done; echo met");
  auto first = runner_.start(script, {folder_.at("a"), folder_.at("b")});
  auto second = runner_.start(script, {folder_.at("b"), folder_.at("a")});
  for (auto* tool : {&first, &second}) EXPECT_EQ(ToolRunner::finish(std::move(*tool)), "met\n");
}

TEST_F(ToolRunnerTest, OutputIsTakenUpToItsLimit) {
  const ToolOptions options{.outputBytes = 1'000};
  EXPECT_EQ(run("head -c 1000 /dev/zero | tr '\\0' x", options).output.size(), 1'000U);
  const ToolResult tooMuch = run("head -c 1001 /dev/zero | tr '\\0' x; exec sleep 1000", options);
  EXPECT_EQ(std::tuple(tooMuch.output, tooMuch.exitStatus, tooMuch.late), std::tuple("", -1, false));
}

// A named pipe that a tool's whole family keeps open tells when the last of them is gone.
class FamilyMark {
 public:
  explicit FamilyMark(const std::string& path) {
    EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0);
    descriptor_ = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  }
  ~FamilyMark() { ::close(descriptor_); }
  FamilyMark(FamilyMark&&) = delete;  // nor copied

  bool appears() const { return waitUntilRead(1); }
  bool vanishes() const { return waitUntilRead(0); }

 private:
  bool waitUntilRead(ssize_t count) const {
    char byte = 0;
    return waitUntil([&] { return ::read(descriptor_, &byte, 1) == count; });
  }

  int descriptor_ = -1;
};

const char* const neverEnding =
    "exec 3>\"$1\"; sleep 1000 & sh -c 'sleep 1000; :' & printf x >&3; echo said; wait";

TEST_F(ToolRunnerTest, AToolThatNeverEndsIsEndedWithItsChildren) {
  for (const bool letGo : {false, true}) {
    const std::string mark = folder_.at(letGo ? "let go" : "late");
    const FamilyMark family(mark);
    auto tool = runner_.start(folder_.script("tool", neverEnding), {mark}, {.seconds = letGo ? 1000 : 0.2});
    ASSERT_TRUE(family.appears());
    if (letGo) {
      tool.reset();
    } else {
      const ToolResult result = tool->result();
      EXPECT_EQ(std::tuple(result.output, result.exitStatus, result.late), std::tuple("", -1, true));
    }
    EXPECT_TRUE(family.vanishes());
  }
}

TEST(LimitedToolRunner, NoToolHasMoreTimeThanTheCheck) {
  FakeClock clock;
  CheckLimits limits(clock);
  RecordingToolRunner tools;
  LimitedToolRunner limited(tools, limits);
  using Run = std::pair<bool, double>;  // late, seconds that the last started tool may take
  const auto run = [&](const std::string& path, double seconds) {
    const bool late = limited.start(path, {}, {.seconds = seconds})->result().late;
    return Run(late, tools.options.seconds);
  };
  EXPECT_EQ(run("/bin/before", 99), Run(false, 99)) << "no check, no limit";
  limits.begin();
  clock.turn(5);
  EXPECT_EQ(run("/bin/quick", 2), Run(false, 2));
  EXPECT_EQ(run("/bin/slow", 10), Run(false, 3));
  tools.answer.late = true;
  EXPECT_EQ(run("/bin/git", 2), Run(true, 2));
  clock.turn(3);
  EXPECT_TRUE(run("/opt/gh", 2).first);
  EXPECT_THAT(tools.calls, SizeIs(4)) << "the last one was not even started";
  EXPECT_THAT(limits.leftOut(), ElementsAre("git", "gh"));
}

TEST_F(ToolRunnerTest, ASurvivorInTheBackgroundDoesNotHoldTheCaller) {
  // The sleeper inherits the pipe; its end is the test's own doing.
  const ToolResult result = run("sleep 1000 2>&1 & echo $!");
  EXPECT_EQ(result.exitStatus, 0);
  const int survivor = std::atoi(result.output.c_str());
  ASSERT_GT(survivor, 1);
  EXPECT_EQ(::kill(survivor, SIGKILL), 0);
}

TEST_F(ToolRunnerTest, EnvironmentIsInheritedExceptWhereTheCallChangesIt) {
  for (const char* name : {"TARNWICK_TEST_KEPT", "TARNWICK_TEST_REPLACED", "TARNWICK_GONE_A"})
    ::setenv(name, "old", 1);
  const ToolOptions options{
      .droppedVariables = {"TARNWICK_GONE_"},
      .addedVariables = {{"TARNWICK_TEST_REPLACED", "new"}, {"TARNWICK_TEST_ADDED", "a b"}}};
  EXPECT_EQ(run("env | grep TARNWICK_ | LC_ALL=C sort", options).output,
            "TARNWICK_TEST_ADDED=a b\nTARNWICK_TEST_KEPT=old\nTARNWICK_TEST_REPLACED=new\n");
}

TEST_F(ToolRunnerTest, SignalsWorkInTheToolWhateverWeDoWithThem) {
  const auto before = std::signal(SIGPIPE, SIG_IGN);
  sigset_t blocked;
  sigset_t maskBefore;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  ASSERT_EQ(::pthread_sigmask(SIG_BLOCK, &blocked, &maskBefore), 0);
  EXPECT_EQ(run("kill -PIPE $$; echo ignored").output, "");
  EXPECT_EQ(run("kill -TERM $$; echo blocked").output, "");
  ::pthread_sigmask(SIG_SETMASK, &maskBefore, nullptr);
  std::signal(SIGPIPE, before);
}

}  // namespace
