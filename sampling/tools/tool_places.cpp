#include "sampling/tools/tool_places.h"

#include "system/environment.h"

namespace tarnwick {

std::optional<std::string> executable(const std::vector<std::string>& candidates, Files& files) {
  if (toolsAreOff()) return std::nullopt;
  for (const std::string& candidate : candidates) {
    if (files.isExecutableFile(candidate)) return candidate;
  }
  return std::nullopt;
}

void ToolPlaces::lookUp() {
  if (lookedUp_) return;
  const std::size_t before = files_.misses();
  gitBin_ = executable(candidates_.git, files_);
  simctlBin_ = executable(candidates_.simctl, files_);
  ghBin_ = executable(candidates_.gh, files_);
  lookedUp_ = files_.misses() == before;
}

const std::optional<std::string>& ToolPlaces::gitBin() {
  lookUp();
  return gitBin_;
}

const std::optional<std::string>& ToolPlaces::simctlBin() {
  lookUp();
  return simctlBin_;
}

const std::optional<std::string>& ToolPlaces::ghBin() {
  lookUp();
  return ghBin_;
}

}  // namespace tarnwick
