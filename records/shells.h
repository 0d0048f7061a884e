// The names of shells.
#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace tarnwick {

// Those that work is started through but never from: no job is named after them.
inline constexpr std::array<std::string_view, 7> shells{"sh", "bash", "zsh", "fish", "dash", "csh", "tcsh"};

// What else people type into.
inline constexpr std::array<std::string_view, 6> rarerShells{"ksh", "mksh", "ash", "rbash", "nu", "elvish"};

constexpr bool isShell(std::string_view name) { return std::ranges::find(shells, name) != shells.end(); }

constexpr bool isInteractiveShell(std::string_view name) {
  return isShell(name) || std::ranges::find(rarerShells, name) != rarerShells.end();
}

}  // namespace tarnwick
