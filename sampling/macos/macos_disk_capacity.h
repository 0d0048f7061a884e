// How much the system would make room for. Any thread.
#pragma once

#include <cstdint>
#include <optional>

namespace tarnwick {

// Bytes on "/" that important data could take, what the system can purge included. Slow: the system adds up
// caches for it. Absent when it gives no figure.
std::optional<std::int64_t> importantUsageCapacity();

}  // namespace tarnwick
