#include "sampling/decode/memory_saver.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <utility>

#include "sampling/decode/json_members.h"

namespace tarnwick {

std::optional<int> memorySaverState(std::string_view localState) {
  const nlohmann::json root = nlohmann::json::parse(localState, nullptr, false);
  const auto* mode = jsonMember(jsonMember(&root, "performance_tuning"), "high_efficiency_mode");
  const std::optional<std::int64_t> state = numberMember(mode, "state");
  if (!state || !std::in_range<int>(*state)) return std::nullopt;
  return static_cast<int>(*state);
}

}  // namespace tarnwick
