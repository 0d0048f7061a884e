// The kernel's answer to "which TCP sockets listen", asked over netlink: 35 times cheaper than the text
// tables of /proc. Owned by the caller.
#pragma once

#include <optional>
#include <vector>

#include "sampling/decode/listeners.h"

namespace tarnwick {

// The listening TCP sockets, v4 and v6, in this program's network namespace; absent when the kernel does
// not answer in full.
std::optional<std::vector<Listener>> listenersFromSockDiag();

}  // namespace tarnwick
