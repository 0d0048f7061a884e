// Google Chrome's settings file, of which one number counts.
#pragma once

#include <optional>
#include <string_view>

namespace tarnwick {

// The integer at performance_tuning, high_efficiency_mode, state of the JSON text; absent when the text is no
// JSON, a key is missing or something on the way is of another type or does not fit.
std::optional<int> memorySaverState(std::string_view localState);

}  // namespace tarnwick
