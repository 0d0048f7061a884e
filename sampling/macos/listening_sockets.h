// Which TCP ports a process waits on, by its open descriptors. Any thread.
#pragma once

#include <cstdint>
#include <vector>

#include "records/basics.h"

namespace tarnwick {

// Host byte order, ascending, each once; empty on failure.
std::vector<std::uint16_t> listeningPorts(Pid pid);

}  // namespace tarnwick
