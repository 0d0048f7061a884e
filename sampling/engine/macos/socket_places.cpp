#include "system/port.h"

namespace tarnwick {

std::vector<std::string> engineSocketPlaces(const Self& self) {
  return {self.home + "/.docker/run/docker.sock"};
}

}  // namespace tarnwick
