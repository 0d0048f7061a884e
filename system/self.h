// Who runs this program and what it costs.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "records/basics.h"
#include "system/mounts.h"

namespace tarnwick {

// The home folder: the environment's when it is set and absolute, else the user database's, else "/";
// without slashes at its end. The bytes stay as they are because files are opened with them. The database,
// which may be a server, is only asked when its answer counts.
std::string homeFolder(const std::optional<std::string>& environment,
                       const std::function<std::string()>& database);

// The folder that `home` really is: through every link, in it or above it. The kernel names working folders
// and executables that way, and they are compared with it. `home` itself where it leads nowhere. What lies
// behind a file system that may never answer is not looked at: the rest of the path stays as it is.
std::string resolvedHome(const std::string& home, const DistantPoints& distant);

// Asks the system; to be called once, at start. The home folder is resolved.
Self readSelf(const DistantPoints& distant);

// User + system time that this process has used so far, in milliseconds; 0 when unknown.
double processorMilliseconds();

}  // namespace tarnwick
