// Sockets that wait for connections, as two kernels tell them. Takes bytes and values, never asks the system.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace tarnwick {

// The inode in what PID/fd/N of a socket points to, "socket:[4711]"; absent for any other descriptor.
std::optional<std::uint64_t> socketInode(std::string_view target);

// A TCP socket that waits for connections.
struct Listener {
  std::uint64_t inode = 0;
  std::uint16_t port = 0;  // host byte order

  bool operator==(const Listener&) const = default;
};

// The listening sockets in net/tcp or net/tcp6, in the file's order.
std::vector<Listener> tcpListeners(std::string_view text);

// The port in a field that holds two bytes in network order, whatever the field's own size.
std::uint16_t portInNetworkOrder(std::int32_t field);

// Ascending, each once: a server that listens on both internet protocols reports its port twice.
std::vector<std::uint16_t> eachPortOnce(std::vector<std::uint16_t> ports);

}  // namespace tarnwick
