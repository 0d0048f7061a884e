// Which application an executable belongs to, from its path alone. Defines what `Proc.app` means on macOS.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

// The display name of the outermost application bundle that holds the executable `path`: the first
// folder ending in ".app" below "/Applications/", "/System/Applications/" or `home`/Applications/.
// Absent for any path outside them or without ".app/Contents/MacOS/".
std::optional<std::string> appName(std::string_view path, std::string_view home);

}  // namespace tarnwick
