#include "sampling/decode/memory_saver.h"

#include <utility>

#include "sampling/decode/json_events.h"

namespace tarnwick {

std::optional<int> memorySaverState(std::string_view localState) {
  std::optional<int> state;
  const bool whole = readJson(localState, [&](JsonPath path, const JsonValue& value) {
    if (isAt(path, {"performance_tuning"}) || isAt(path, {"performance_tuning", "high_efficiency_mode"})) {
      state.reset();
    } else if (isAt(path, {"performance_tuning", "high_efficiency_mode", "state"})) {
      const bool fits = value.whole && std::in_range<int>(*value.whole);
      state = fits ? std::optional(static_cast<int>(*value.whole)) : std::nullopt;
    }
    return true;
  });
  return whole ? state : std::nullopt;
}

}  // namespace tarnwick
