#include "sampling/tools/posix/quiet_socket.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tarnwick {

// A child started between the two calls inherits the descriptor: macOS cannot open and mark in one step.
int openQuietSocket() {
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  if (socket < 0) return -1;
  const int on = 1;
  if (::fcntl(socket, F_SETFD, FD_CLOEXEC) != 0 ||
      ::setsockopt(socket, SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on) != 0) {
    ::close(socket);
    return -1;
  }
  return socket;
}

ssize_t sendQuietly(int socket, const void* bytes, std::size_t count) {
  return ::send(socket, bytes, count, 0);
}

}  // namespace tarnwick
