#include "system/unix_socket.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <vector>

#include "system/posix/differences.h"

namespace tarnwick {
namespace {

using Instant = std::chrono::steady_clock::time_point;

constexpr double longestWait = 3600;  // seconds; keeps every conversion below in range
constexpr std::size_t chunkBytes = 65'536;

Instant after(double seconds) {
  const std::chrono::duration<double> wait{std::clamp(seconds, 0.0, longestWait)};
  return std::chrono::steady_clock::now() + std::chrono::duration_cast<Instant::duration>(wait);
}

// Rounded up, so that a wait never ends just before its time and spins.
int millisecondsUntil(Instant end) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
  return static_cast<int>(std::max<std::chrono::milliseconds::rep>(left.count(), 0));
}

// Linux holds back a connect to a service that accepts nobody; the send time-out bounds that wait too.
bool limitSending(int socket, Instant end) {
  const int milliseconds = std::max(millisecondsUntil(end), 1);
  timeval wait{};
  wait.tv_sec = milliseconds / 1000;
  wait.tv_usec = static_cast<decltype(wait.tv_usec)>(milliseconds % 1000) * 1000;
  return ::setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &wait, sizeof wait) == 0;
}

std::optional<sockaddr_un> addressOf(const std::string& path) {
  sockaddr_un address{};
  if (path.empty() || path.size() >= sizeof address.sun_path) return std::nullopt;
  if (path.find('\0') != std::string::npos) return std::nullopt;
  address.sun_family = AF_UNIX;
  std::copy(path.begin(), path.end(), address.sun_path);
  return address;
}

bool connectTo(int socket, const sockaddr_un& address, Instant end) {
  for (;;) {
    if (!limitSending(socket, end)) return false;
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return true;
    if (errno != EINTR || millisecondsUntil(end) == 0) return false;
  }
}

bool sendWhole(int socket, std::string_view request, Instant end) {
  for (;;) {
    if (!limitSending(socket, end)) return false;
    const ssize_t sent = sendQuietly(socket, request.data(), request.size());
    if (sent >= 0) return static_cast<std::size_t>(sent) == request.size();
    if (errno != EINTR || millisecondsUntil(end) == 0) return false;
  }
}

// True when a read will not block: bytes, the end, or an error wait to be fetched.
bool waitForBytes(int socket, Instant end) {
  for (;;) {
    pollfd one{socket, POLLIN, 0};
    const int ready = ::poll(&one, 1, millisecondsUntil(end));
    if (ready > 0) return true;
    if (ready == 0 || errno != EINTR) return false;
  }
}

std::optional<std::string> readToEnd(int socket, const ExchangeLimits& limits, Instant end) {
  std::string reply;
  std::vector<char> chunk(chunkBytes);
  while (waitForBytes(socket, std::min(after(limits.silence), end))) {
    const ssize_t got = ::recv(socket, chunk.data(), chunk.size(), MSG_DONTWAIT);
    if (got < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (got <= 0) break;
    const auto count = static_cast<std::size_t>(got);
    if (count > limits.replyBytes - reply.size()) return std::nullopt;
    reply.append(chunk.data(), count);
  }
  if (reply.empty()) return std::nullopt;
  return reply;
}

}  // namespace

bool UnixSocketTransport::reachable(const std::string& path) {
  if (files_ != nullptr) return files_->isOpenSocket(path);
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISSOCK(status.st_mode) &&
         ::access(path.c_str(), R_OK | W_OK) == 0;
}

std::optional<std::string> UnixSocketTransport::exchange(const std::string& path, std::string_view request,
                                                         const ExchangeLimits& limits) {
  const std::optional<sockaddr_un> address = addressOf(path);
  if (!address) return std::nullopt;
  const Descriptor socket = openQuietSocket();
  if (!socket.isOpen()) return std::nullopt;
  const Instant end = after(limits.total);
  const Instant sendEnd = std::min(after(limits.silence), end);
  if (!connectTo(socket.number(), *address, sendEnd)) return std::nullopt;
  if (!sendWhole(socket.number(), request, sendEnd)) return std::nullopt;
  return readToEnd(socket.number(), limits, end);
}

}  // namespace tarnwick
