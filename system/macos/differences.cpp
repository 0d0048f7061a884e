#include "system/posix/differences.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>

namespace tarnwick {

// CLOCK_MONOTONIC goes on during sleep here.
clockid_t awakeClock() { return CLOCK_UPTIME_RAW; }

namespace {

// A child started in between inherits the descriptor: macOS cannot open and mark in one step.
Descriptor quiet(Descriptor socket) {
  const int on = 1;
  if (::fcntl(socket.number(), F_SETFD, FD_CLOEXEC) != 0 ||
      ::setsockopt(socket.number(), SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on) != 0) {
    socket.close();
  }
  return socket;
}

}  // namespace

Descriptor openQuietSocket() { return quiet(Descriptor(::socket(AF_UNIX, SOCK_STREAM, 0))); }

std::pair<Descriptor, Descriptor> openQuietPair() {
  std::array<int, 2> ends{-1, -1};
  if (::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) != 0) return std::pair<Descriptor, Descriptor>();
  return {quiet(Descriptor(ends[0])), quiet(Descriptor(ends[1]))};
}

int quietFlag() { return 0; }

ssize_t sendQuietly(int socket, const void* bytes, std::size_t count) {
  return ::send(socket, bytes, count, 0);
}

void closeAllFrom(int first) {
  for (int number = first; number < ::getdtablesize(); ++number) ::close(number);
}

// There is no such wish here; the worker ends when its socket is closed.
void endWithParent(bool /*wanted*/) {}

}  // namespace tarnwick
