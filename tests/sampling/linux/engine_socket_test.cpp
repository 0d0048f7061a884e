#include "sampling/engine_socket.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using testing::ElementsAre;

TEST(EngineSocket, DesktopBeforeRootlessBeforeTheSystems) {
  const Self self{700, 1000, "/home/ana"};
  EXPECT_THAT(
      engineSocketPlaces(self, "/run/ana"),
      ElementsAre("/home/ana/.docker/desktop/docker.sock", "/run/ana/docker.sock", "/var/run/docker.sock"));
  for (const std::string unset : {"", "relative"}) {
    EXPECT_EQ(engineSocketPlaces(self, unset)[1], "/run/user/1000/docker.sock");
  }
}

}  // namespace
}  // namespace tarnwick
