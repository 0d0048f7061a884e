// The members of foreign JSON, of which nothing is taken for granted. `object` may be null or any kind of
// value. Pure.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

namespace tarnwick {

// Null when there is no such member, or `object` is no object.
const nlohmann::json* jsonMember(const nlohmann::json* object, const char* key);

// A member that is a text.
std::optional<std::string> textMember(const nlohmann::json* object, const char* key);

// A member that is a whole number of 64 bits with sign. The library keeps larger ones as unsigned; asked as
// signed they would wrap.
std::optional<std::int64_t> numberMember(const nlohmann::json* object, const char* key);

}  // namespace tarnwick
