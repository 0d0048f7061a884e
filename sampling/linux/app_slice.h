// The part of the cgroup tree in which the user's session manager keeps applications. Any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tarnwick {

inline constexpr const char* usualCgroupRoot = "/sys/fs/cgroup";

// The folder of the slice in the tree mounted at `cgroupRoot`; absent where the session has none.
std::optional<std::string> appSlice(const std::string& cgroupRoot, std::uint32_t uid);

}  // namespace tarnwick
