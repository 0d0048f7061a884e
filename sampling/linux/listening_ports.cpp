#include "sampling/linux/listening_ports.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "sampling/linux/sock_diag.h"

namespace tarnwick {

std::vector<std::uint16_t> ListeningPorts::of(const ProcessFiles& process) {
  if (!listeners_) readListeners();
  if (listeners_->empty()) return {};  // spares the dearest read, that of every descriptor
  std::vector<std::uint16_t> ports;
  std::size_t looked = 0;
  process.eachDescriptor([&](std::string_view target) {
    if (const auto inode = socketInode(target)) {
      const auto found = std::ranges::lower_bound(*listeners_, *inode, {}, &Listener::inode);
      if (found != listeners_->end() && found->inode == *inode) ports.push_back(found->port);
    }
    return mayLookOn(++looked);
  });
  return eachPortOnce(std::move(ports));
}

void ListeningPorts::beginPass() {
  listeners_.reset();
  lookedInPass_ = 0;
}

// Is there more to be looked at, and time for it? The clock is asked now and then.
bool ListeningPorts::mayLookOn(std::size_t looked) {
  constexpr std::size_t now = 1'024;
  ++lookedInPass_;
  const bool inTime = limits_ == nullptr || looked % now != 0 || !limits_->deadline().passed();
  if (looked < mostOfProcess && lookedInPass_ < mostOfPass && inTime) return true;
  if (limits_ != nullptr) limits_->leaveOut("ports of processes with very many open files");
  return false;
}

std::vector<Listener> ListeningPorts::fromTables() const {
  std::vector<Listener> listeners = tcpListeners(reader_.machineFile("net/tcp"));
  const std::vector<Listener> v6 = tcpListeners(reader_.machineFile("net/tcp6"));
  listeners.insert(listeners.end(), v6.begin(), v6.end());
  return listeners;
}

void ListeningPorts::readListeners() {
  if (live_) listeners_ = listenersFromSockDiag();
  if (!listeners_) listeners_ = fromTables();
  std::ranges::sort(*listeners_, {}, &Listener::inode);
}

}  // namespace tarnwick
