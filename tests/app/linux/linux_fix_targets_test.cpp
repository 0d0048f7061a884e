#include "app/linux/linux_fix_targets.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <functional>

#include "context/linux/linux_browsers.h"
#include "sampling/tools/posix/posix_tool_runner.h"
#include "tests/support/fake_transport.h"
#include "tests/support/linux/found_processes.h"
#include "tests/support/posix/child_process.h"
#include "tests/support/temp_folder.h"

namespace tarnwick {
namespace {

const std::optional<std::string> done;

// A session whose applications the test names; `onAsked` runs before each answer.
class NamedApps final : public Workspace {
 public:
  std::vector<RunningApp> apps;
  std::function<void()> onAsked = [] {};
  std::vector<RunningApp> runningApps() override {
    onAsked();
    return apps;
  }
};

class LinuxFixTargetsTest : public testing::Test {
 protected:
  RunningApp app(const ChildProcess& child, const std::string& id) {
    return {child.pid(), id, id, "/" + id, false};
  }

  TempFolder folder_;
  FakeTransport engine_;
  Docker docker_{engine_, {"/engine.sock"}};
  LinuxBrowsers browsers_;
  PosixToolRunner tools_;
  ToolPlaces places_{ToolCandidates{}};
  NamedApps session_;
  FoundProcesses found_;
  LinuxFixTargets targets_{
      {docker_, browsers_, tools_, places_}, session_, LinuxSignals(::getuid(), found_.clock())};
};

TEST_F(LinuxFixTargetsTest, QuitAsksEveryUnitOfThatApplication) {
  ChildProcess first;
  ChildProcess second;
  ChildProcess other;
  session_.apps = {app(first, "org.example.Mail"), app(other, "org.example.Mailer"),
                   app(second, "org.example.Mail")};
  EXPECT_EQ(apply({QuitApp{"org.example.Mail"}}, targets_), done);
  EXPECT_EQ(first.endedBy(), SIGTERM);
  EXPECT_EQ(second.endedBy(), SIGTERM);
  EXPECT_EQ(apply({QuitApp{"org.example.Gone"}}, targets_), done);
  EXPECT_EQ(other.killed(), SIGKILL);
}

TEST_F(LinuxFixTargetsTest, QuitSparesAProcessThatIsNoLongerTheApplications) {
  ChildProcess child;
  int asked = 0;
  session_.apps = {app(child, "a")};
  session_.onAsked = [&] {
    if (++asked == 2) session_.apps.clear();
  };
  EXPECT_EQ(apply({QuitApp{"a"}}, targets_), done);
  EXPECT_EQ(asked, 2);
  EXPECT_EQ(child.killed(), SIGKILL);
}

TEST_F(LinuxFixTargetsTest, WhatLinuxLacksIsRefused) {
  const Fix lacking[] = {{SimShutdown{"U"}},
                         {OpenSettings{"p"}},
                         {CloseDuplicateTabs{"b"}},
                         {OpenTab{"b", "u"}},
                         {AskAutomation{"b"}}};
  for (const Fix& fix : lacking) EXPECT_NE(apply(fix, targets_), done) << fix.command();
  EXPECT_EQ(browsers_.access("b"), Access::unknown);
  EXPECT_EQ(browsers_.readTabs("b"), std::nullopt);
}

TEST_F(LinuxFixTargetsTest, ContainersStopThroughTheEngine) {
  engine_.replies["POST /containers/c1/stop"] = "HTTP/1.0 204 No Content\r\n\r\n";
  EXPECT_EQ(apply({DockerStop{"c1"}}, targets_), done);
  EXPECT_EQ(apply({DockerStop{"c2"}}, targets_), "Not done: Docker did not stop the container.");
}

TEST_F(LinuxFixTargetsTest, SimulatorsShutDownThroughTheirTool) {
  ToolCandidates candidates;
  candidates.simctl = {folder_.script("simctl", "[ $# = 2 ] && [ \"$1\" = shutdown ] && [ \"$2\" = U-1 ]")};
  ToolPlaces places{candidates};
  LinuxFixTargets targets({docker_, browsers_, tools_, places}, session_,
                          LinuxSignals(::getuid(), found_.clock()));
  EXPECT_EQ(apply({SimShutdown{"U-1"}}, targets), done);
  EXPECT_EQ(apply({SimShutdown{"U-2"}}, targets), "Not done: the simulator did not shut down.");
  folder_.write("simctl", "#!/nonexistent/interpreter\n");
  EXPECT_EQ(apply({SimShutdown{"U-1"}}, targets), "Not done: Xcode is not installed.");
}

}  // namespace
}  // namespace tarnwick
