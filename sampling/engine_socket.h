// Where a container engine of this user publishes its socket. Each system has its own places.
#pragma once

#include <string>
#include <vector>

#include "records/basics.h"

namespace tarnwick {

// The places, the preferred one first; most do not exist. `runtimeDir` is the session's XDG_RUNTIME_DIR,
// empty when it is not set; one that is no absolute path counts as not set.
std::vector<std::string> engineSocketPlaces(const Self& self, const std::string& runtimeDir);

}  // namespace tarnwick
