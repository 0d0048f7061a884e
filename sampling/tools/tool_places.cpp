#include "sampling/tools/tool_places.h"

#include "system/environment.h"
#include "system/small_file.h"

namespace tarnwick {

std::optional<std::string> executable(const std::vector<std::string>& candidates) {
  if (toolsAreOff()) return std::nullopt;
  for (const std::string& candidate : candidates) {
    if (isExecutableFile(candidate)) return candidate;
  }
  return std::nullopt;
}

void ToolPlaces::lookUp() {
  std::call_once(lookedUp_, [this] {
    gitBin_ = executable(candidates_.git);
    simctlBin_ = executable(candidates_.simctl);
    ghBin_ = executable(candidates_.gh);
  });
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
