// The client against a container engine that this test starts. Where no engine can be started the test is
// skipped and says why.
#include <unistd.h>

#include "sampling/engine/docker.h"
#include "sampling/linux/control_groups.h"
#include "sampling/tools/posix/posix_tool_runner.h"
#include "system/port.h"
#include "tests/support/testing.h"

namespace {

TEST(EngineSocket, DesktopBeforeRootlessBeforeTheSystems) {
  ::setenv("XDG_RUNTIME_DIR", "/run/ana", 1);
  EXPECT_THAT(
      engineSocketPlaces({700, 1000, "/home/ana"}),
      ElementsAre("/home/ana/.docker/desktop/docker.sock", "/run/ana/docker.sock", "/var/run/docker.sock"));
}

ToolResult runScript(const std::string& action, const std::string& folder) {
  PosixToolRunner runner;
  const Strings words{"-c", "exec bash \"$0\" \"$@\" 2>&1",
                      TARNWICK_SOURCE_DIR "/tests/sampling/linux/real_engine", action, folder};
  return runner.start("/bin/sh", words, {.seconds = 100})->result();
}

struct RealEngine : testing::Test {
  void SetUp() override {
    const ToolResult end = runScript("start", folder_.path());
    if (end.exitStatus == 77) GTEST_SKIP() << end.output;
    ASSERT_EQ(end.exitStatus, 0) << end.output;
  }
  void TearDown() override { EXPECT_EQ(runScript("stop", folder_.path()).exitStatus, 0); }

  TempFolder folder_;
  UnixSocketTransport transport_;
  Docker docker_{transport_, {folder_.path() + "/none.sock", folder_.path() + "/d.sock"}};
};

TEST_F(RealEngine, ListsMeasuresAndStops) {
  ASSERT_TRUE(docker_.present());
  const std::vector<Container> five = docker_.dockerContainers();
  const std::vector<ContainerGroup> groups = ControlGroups("/sys/fs/cgroup", ::getuid()).containers();
  ASSERT_EQ(five.size(), 5U);
  for (std::size_t i = 0; i < five.size(); ++i) {
    const Container& container = five[i];
    EXPECT_EQ(container.name, "t" + std::to_string(i + 1)) << "the engine lists the newest first";
    EXPECT_EQ(container.id.size(), 12U);
    EXPECT_EQ(container.image, "tiny:1");
    EXPECT_THAT(container.status, StartsWith("Up "));
    EXPECT_TRUE(container.mem > 0 && container.mem <= 64U << 20U) << container.name << " " << container.mem;
    const auto group = std::ranges::find(groups, container.id, &ContainerGroup::id);
    ASSERT_NE(group, groups.end()) << container.name;
    EXPECT_THAT(group->pids, SizeIs(1)) << container.name;
    EXPECT_NEAR(static_cast<double>(group->bytes), static_cast<double>(container.mem), 1 << 20)
        << container.name;
    EXPECT_GT(group->processorTime, 0U) << container.name;
  }
  EXPECT_TRUE(docker_.stop(five[0].id));
  EXPECT_TRUE(docker_.stop(five[0].id)) << "stopped already counts as done";
  EXPECT_FALSE(docker_.stop("0123456789ab")) << "no such container";
  const std::vector<Container> four = docker_.dockerContainers();
  ASSERT_EQ(four.size(), 4U);
  EXPECT_EQ(four[0].name, "t2");
}

}  // namespace
