// The client against a container engine that this test starts. Where no engine can be started the test is
// skipped and says why.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <memory>

#include "sampling/docker.h"
#include "tests/support/temp_folder.h"

namespace tarnwick {
namespace {

struct ScriptEnd {
  int status;
  std::string output;
};

ScriptEnd runScript(const std::string& action, const std::string& folder) {
  const std::string command =
      "bash " TARNWICK_SOURCE_DIR "/tests/sampling/linux/real_engine.sh " + action + " " + folder + " 2>&1";
  std::FILE* pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) return {-1, "no shell"};
  ScriptEnd end{-1, ""};
  std::array<char, 4096> chunk{};
  while (std::fgets(chunk.data(), static_cast<int>(chunk.size()), pipe) != nullptr)
    end.output += chunk.data();
  const int status = ::pclose(pipe);
  end.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return end;
}

class RealEngine : public testing::Test {
 protected:
  void SetUp() override {
    const ScriptEnd end = runScript("start", folder_.path());
    if (end.status == 77) GTEST_SKIP() << end.output;
    ASSERT_EQ(end.status, 0) << end.output;
  }
  void TearDown() override { EXPECT_EQ(runScript("stop", folder_.path()).status, 0); }

  TempFolder folder_;
  UnixSocketTransport transport_;
  Docker docker_{transport_, {folder_.path() + "/none.sock", folder_.path() + "/d.sock"}};
};

TEST_F(RealEngine, ListsMeasuresAndStops) {
  ASSERT_TRUE(docker_.present());
  const std::vector<Container> five = docker_.dockerContainers();
  ASSERT_EQ(five.size(), 5U);
  for (std::size_t i = 0; i < five.size(); ++i) {
    const Container& container = five[i];
    EXPECT_EQ(container.name, "t" + std::to_string(i + 1)) << "the engine lists the newest first";
    EXPECT_EQ(container.id.size(), 12U);
    EXPECT_EQ(container.image, "tiny:1");
    EXPECT_EQ(container.status.rfind("Up ", 0), 0U) << container.status;
    EXPECT_GT(container.mem, 0U) << container.name;
    EXPECT_LE(container.mem, 64U << 20U) << container.name;
  }
  EXPECT_TRUE(docker_.stop(five[0].id));
  EXPECT_TRUE(docker_.stop(five[0].id)) << "stopped already counts as done";
  EXPECT_FALSE(docker_.stop("0123456789ab")) << "no such container";
  const std::vector<Container> four = docker_.dockerContainers();
  ASSERT_EQ(four.size(), 4U);
  EXPECT_EQ(four[0].name, "t2");
}

}  // namespace
}  // namespace tarnwick
