#include "system/posix/differences.h"

#include <fcntl.h>
#include <sys/socket.h>

namespace tarnwick {

// CLOCK_MONOTONIC goes on during sleep here.
clockid_t awakeClock() { return CLOCK_UPTIME_RAW; }

// A child started between the two calls inherits the descriptor: macOS cannot open and mark in one step.
Descriptor openQuietSocket() {
  Descriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
  const int on = 1;
  if (::fcntl(socket.number(), F_SETFD, FD_CLOEXEC) != 0 ||
      ::setsockopt(socket.number(), SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on) != 0) {
    socket.close();
  }
  return socket;
}

ssize_t sendQuietly(int socket, const void* bytes, std::size_t count) {
  return ::send(socket, bytes, count, 0);
}

}  // namespace tarnwick
