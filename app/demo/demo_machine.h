// The base of the demo: one invented machine on which every rule has something to find.
#pragma once

#include <cstdint>
#include <string>

#include "records/snapshot.h"

namespace tarnwick {

inline constexpr std::uint64_t demoMegabyte = 1'048'576;
inline constexpr std::uint64_t demoGigabyte = 1024 * demoMegabyte;

// The base machine, not indexed. Its forgotten servers run in `projectDir`.
Snapshot demoBase(Timestamp now, const std::string& projectDir, const Self& self);

}  // namespace tarnwick
