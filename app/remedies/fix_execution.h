// Carries out one remedy. Everything it touches is handed in, so the sentences and the order are the same on
// every system and tests hand in twins. Blocks its caller: up to half a minute while the container engine
// answers, or until the user has answered the system's question. Not for the main thread.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "app/remedies/system_targets.h"
#include "context/browsers.h"
#include "records/finding.h"
#include "sampling/engine/docker.h"
#include "sampling/tools/tool_places.h"
#include "sampling/tools/tool_runner.h"

namespace tarnwick {

// What remedies act on. None of it is owned.
struct FixTargets {
  SystemTargets& system;
  const Docker& docker;
  Browsers& browsers;
  ToolRunner& tools;
  ToolPlaces& places;
};

// Absent when the remedy was carried out; otherwise what to tell the user, as it stands.
std::optional<std::string> apply(const Fix& fix, const FixTargets& targets);

// Of several remedies each is tried, by `applyOne`, and the messages of those that failed are joined by line
// feeds.
std::optional<std::string> applyInTurn(const All& all,
                                       const std::function<std::optional<std::string>(const Fix&)>& applyOne);

}  // namespace tarnwick
