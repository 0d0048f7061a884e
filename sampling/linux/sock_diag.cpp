#include "sampling/linux/sock_diag.h"

#include <arpa/inet.h>
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <span>

#include "system/posix/descriptor.h"

namespace tarnwick {
namespace {

Descriptor netlinkSocket() {
  Descriptor socket(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_SOCK_DIAG));
  const timeval patience{1, 0};
  if (socket.isOpen()) ::setsockopt(socket.number(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
  return socket;
}

struct Request {
  nlmsghdr header{};
  inet_diag_req_v2 body{};
};

bool askForListeners(const Descriptor& socket, int family) {
  Request request;
  request.header.nlmsg_len = sizeof request;
  request.header.nlmsg_type = SOCK_DIAG_BY_FAMILY;
  request.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
  request.body.sdiag_family = static_cast<std::uint8_t>(family);
  request.body.sdiag_protocol = IPPROTO_TCP;
  request.body.idiag_states = 1U << TCP_LISTEN;
  sockaddr_nl kernel{};
  kernel.nl_family = AF_NETLINK;
  const auto* address = reinterpret_cast<const sockaddr*>(&kernel);
  return ::sendto(socket.number(), &request, sizeof request, 0, address, sizeof kernel) == sizeof request;
}

bool dumpListeners(const Descriptor& socket, int family, std::vector<Listener>& listeners) {
  if (!askForListeners(socket, family)) return false;
  std::array<char, 32'768> buffer{};
  while (true) {
    const ssize_t count = ::recv(socket.number(), buffer.data(), buffer.size(), 0);
    if (count <= 0) return false;
    const auto state = takeListeners(std::span(buffer).first(static_cast<std::size_t>(count)), listeners);
    if (state != Dump::goesOn) return state == Dump::complete;
  }
}

}  // namespace

Dump takeListeners(std::span<const char> bytes, std::vector<Listener>& listeners) {
  constexpr std::size_t alignment = NLMSG_ALIGNTO;
  while (bytes.size() >= sizeof(nlmsghdr)) {
    nlmsghdr header{};
    std::memcpy(&header, bytes.data(), sizeof header);
    if (header.nlmsg_len < sizeof header || header.nlmsg_len > bytes.size()) return Dump::failed;
    if (header.nlmsg_type == NLMSG_DONE) return Dump::complete;
    if (header.nlmsg_type != SOCK_DIAG_BY_FAMILY) return Dump::failed;
    inet_diag_msg message{};
    if (header.nlmsg_len < sizeof header + sizeof message) return Dump::failed;
    std::memcpy(&message, bytes.data() + sizeof header, sizeof message);
    listeners.push_back({message.idiag_inode, ntohs(message.id.idiag_sport)});
    const std::size_t step = (header.nlmsg_len + alignment - 1) / alignment * alignment;
    bytes = bytes.subspan(std::min(step, bytes.size()));
  }
  return Dump::goesOn;
}

std::optional<std::vector<Listener>> listenersFromSockDiag() {
  const Descriptor socket = netlinkSocket();
  std::vector<Listener> listeners;
  if (!socket.isOpen()) return std::nullopt;
  if (!dumpListeners(socket, AF_INET, listeners)) return std::nullopt;
  if (!dumpListeners(socket, AF_INET6, listeners)) return std::nullopt;
  return listeners;
}

}  // namespace tarnwick
