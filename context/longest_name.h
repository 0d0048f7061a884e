// How much of a name or title that other programs wrote is kept.
#pragma once

#include <cstddef>

namespace tarnwick {

// Characters; a longer one is cut. Branches, commits, sessions and jobs have names far below it, and the
// panel lays out this much at once.
inline constexpr std::size_t longestName = 4'096;

}  // namespace tarnwick
