#include "app/demo/demo_surroundings.h"

namespace tarnwick {

DemoSurroundings::DemoSurroundings(const Demo& demo, Surroundings& live)
    : repositories_(demo.repositories.begin(), demo.repositories.end()), live_(live) {}

std::optional<Git> DemoSurroundings::git(const std::string& dir) {
  const auto known = repositories_.find(dir);
  return known == repositories_.end() ? std::nullopt : std::optional(known->second);
}

}  // namespace tarnwick
