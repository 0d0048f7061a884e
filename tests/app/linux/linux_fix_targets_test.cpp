#include "app/linux/linux_fix_targets.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <string>
#include <utility>
#include <vector>

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
  EXPECT_EQ(apply({SimShutdown{"U"}}, targets_), "Not done: Xcode is not installed.");
  EXPECT_EQ(apply({OpenSettings{"p"}}, targets_), "Not done: System Settings did not open.");
  EXPECT_EQ(apply({CloseDuplicateTabs{"b"}}, targets_), "Not done: the browser did not answer.");
  EXPECT_EQ(apply({OpenTab{"b", "u"}}, targets_), "Not done: the browser did not open the page.");
  EXPECT_EQ(apply({AskAutomation{"b"}}, targets_),
            "Not allowed. You can change this later in Privacy & Security > Automation.");
  EXPECT_EQ(browsers_.access("b"), Access::unknown);
  EXPECT_EQ(browsers_.readTabs("b"), std::nullopt);
}

TEST_F(LinuxFixTargetsTest, ContainersStopThroughTheEngine) {
  engine_.replies["POST /containers/c1/stop"] = "HTTP/1.0 204 No Content\r\n\r\n";
  EXPECT_EQ(apply({DockerStop{"c1"}}, targets_), done);
  EXPECT_EQ(apply({DockerStop{"c2"}}, targets_), "Not done: Docker did not stop the container.");
  EXPECT_EQ(apply({DockerStop{"../c1"}}, targets_), "Not done: Docker did not stop the container.");
}

TEST_F(LinuxFixTargetsTest, SimulatorsShutDownThroughTheirTool) {
  const std::string tool =
      folder_.script("simctl", "[ $# = 2 ] && [ \"$1\" = shutdown ] && [ \"$2\" = U-1 ]");
  const std::string broken = folder_.write("broken", "#!/nonexistent/interpreter\n");
  std::filesystem::permissions(broken, std::filesystem::perms::owner_all);
  const std::vector<std::pair<std::string, std::vector<std::optional<std::string>>>> cases{
      {tool, {done, "Not done: the simulator did not shut down."}},
      {broken, {"Not done: Xcode is not installed.", "Not done: Xcode is not installed."}},
  };
  for (const auto& [path, messages] : cases) {
    ToolCandidates candidates;
    candidates.simctl = {path};
    ToolPlaces places{candidates};
    LinuxFixTargets targets({docker_, browsers_, tools_, places}, session_,
                            LinuxSignals(::getuid(), found_.clock()));
    EXPECT_EQ(apply({SimShutdown{"U-1"}}, targets), messages[0]) << path;
    EXPECT_EQ(apply({SimShutdown{"U-2"}}, targets), messages[1]) << path;
  }
}

}  // namespace
}  // namespace tarnwick
