// What a command line, an image name or a server process is, in words that a user knows. Pure functions.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "records/snapshot.h"

namespace tarnwick {

// "tests", "a build" or "a package install", by the words that `commandLine` contains anywhere, even inside
// longer words; absent when it has none of them.
std::optional<std::string_view> workKind(std::string_view commandLine);

// The database that an image or container name contains, such as "Postgres"; "container" when none.
std::string_view dbKind(std::string_view text);

// What a listening process serves, such as "Node server" or "Python API"; for an unknown program its tool's
// name and " server".
std::string serverKind(const Proc& proc);

}  // namespace tarnwick
