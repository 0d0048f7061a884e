// Property lists, XML and binary. Answered by each system's own file; any thread.
#pragma once

#include <optional>
#include <string>

namespace tarnwick {

// The text under `key` of a list whose top is a dictionary; absent when the list is malformed, the key is
// missing or its value is no text. Lists far larger than any device's are refused.
std::optional<std::string> propertyListText(const std::string& list, const std::string& key);

}  // namespace tarnwick
