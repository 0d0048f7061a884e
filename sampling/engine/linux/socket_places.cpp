#include "system/environment.h"
#include "system/port.h"

namespace tarnwick {

std::vector<std::string> engineSocketPlaces(const Self& self) {
  return {self.home + "/.docker/desktop/docker.sock", runtimeFolder(self.uid) + "/docker.sock",
          "/var/run/docker.sock"};
}

}  // namespace tarnwick
