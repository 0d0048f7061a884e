#include "sampling/engine_socket.h"

namespace tarnwick {

std::vector<std::string> engineSocketPlaces(const Self& self, const std::string& runtimeDir) {
  const bool set = !runtimeDir.empty() && runtimeDir.front() == '/';
  const std::string ofSession = set ? runtimeDir : "/run/user/" + std::to_string(self.uid);
  return {self.home + "/.docker/desktop/docker.sock", ofSession + "/docker.sock", "/var/run/docker.sock"};
}

}  // namespace tarnwick
