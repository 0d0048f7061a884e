// What the files of Claude Code say: bytes in, facts out. JSON that cannot be read is absent, never an
// error.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

// The text as a JSON object; absent when it is not JSON, or another kind of value.
std::optional<nlohmann::json> jsonObject(std::string_view text);

// The last line of `bytes` that is marked with `type`, as an object. Only that line is tried: absent when it
// is cut or lacks `key`, even if an older line would serve.
std::optional<nlohmann::json> newest(std::string_view bytes, std::string_view type, std::string_view key);

}  // namespace tarnwick
