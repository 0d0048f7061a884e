// Users as the file /etc/passwd names them. Takes its bytes and never reads.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

// The name of the first line with that user id; absent when there is none, or it has no name. Valid UTF-8.
std::optional<std::string> accountName(std::string_view passwd, std::uint32_t uid);

}  // namespace tarnwick
