// The kernel's answer to "which TCP sockets listen", asked over netlink: 35 times cheaper than the text
// tables of /proc. Owned by the caller.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "sampling/decode/listeners.h"

namespace tarnwick {

// The listening TCP sockets, v4 and v6, in this program's network namespace; absent when the kernel does
// not answer in full.
std::optional<std::vector<Listener>> listenersFromSockDiag();

// What one datagram of the kernel's answer says of the whole.
enum class Dump { goesOn, complete, failed };

// Takes the listeners out of one datagram; failed when it is cut, an error, or something else.
Dump takeListeners(std::span<const char> bytes, std::vector<Listener>& listeners);

}  // namespace tarnwick
