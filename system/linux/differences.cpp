#include "system/posix/differences.h"

#include <sys/socket.h>

namespace tarnwick {

clockid_t awakeClock() { return CLOCK_MONOTONIC; }

Descriptor openQuietSocket() { return Descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)); }

ssize_t sendQuietly(int socket, const void* bytes, std::size_t count) {
  return ::send(socket, bytes, count, MSG_NOSIGNAL);
}

}  // namespace tarnwick
