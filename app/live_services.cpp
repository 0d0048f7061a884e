#include "app/live_services.h"

#include "app/explain/explain_child.h"
#include "app/program/own_process.h"

namespace tarnwick {

Check LiveServices::check(const std::set<Pid>& termed) {
  Snapshot snapshot = live_.scan(LiveCheck::checkSeconds);
  std::vector<Finding> found = live_.findings(snapshot, termed);
  return {std::move(snapshot), std::move(found)};
}

std::optional<std::string> LiveServices::ownExecutable() { return tarnwick::ownExecutable(); }

std::string LiveServices::explainByChild(const std::string& executable, const std::string& evidence) {
  return tarnwick::explainByChild(live_.tools(), executable, evidence);
}

void LiveServices::freeMemory() { tarnwick::freeMemory(); }

}  // namespace tarnwick
