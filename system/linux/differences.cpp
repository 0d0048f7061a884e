#include "system/posix/differences.h"

#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <limits>

namespace tarnwick {

clockid_t awakeClock() { return CLOCK_MONOTONIC; }

Descriptor openQuietSocket() { return Descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)); }

std::pair<Descriptor, Descriptor> openQuietPair() {
  std::array<int, 2> ends{-1, -1};
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
    return std::pair<Descriptor, Descriptor>();
  return {Descriptor(ends[0]), Descriptor(ends[1])};
}

int quietFlag() { return MSG_NOSIGNAL; }

ssize_t sendQuietly(int socket, const void* bytes, std::size_t count) {
  return ::send(socket, bytes, count, MSG_NOSIGNAL);
}

// By its number, because the C library's own function is younger than some systems, as the call is younger
// than some kernels.
void closeAllFrom(int first) {
  constexpr long closeRange = 436;
  constexpr rlim_t most = 65'536;
  if (::syscall(closeRange, first, std::numeric_limits<unsigned>::max(), 0) == 0) return;
  rlimit limit{};
  const bool known = ::getrlimit(RLIMIT_NOFILE, &limit) == 0;
  const int end = static_cast<int>(known ? std::min(limit.rlim_cur, most) : most);
  for (int number = first; number < end; ++number) ::close(number);
}

void endWithParent(bool wanted) { ::prctl(PR_SET_PDEATHSIG, wanted ? SIGKILL : 0); }

}  // namespace tarnwick
