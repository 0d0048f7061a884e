#include "sampling/linux/listening_ports.h"

#include <algorithm>
#include <string>
#include <utility>

#include "sampling/linux/sock_diag.h"

namespace tarnwick {

std::vector<std::uint16_t> ListeningPorts::of(const ProcessFiles& process) {
  if (!listeners_) readListeners();
  if (listeners_->empty()) return {};  // spares the dearest read, that of every descriptor
  std::vector<std::uint16_t> ports;
  for (const std::string& target : process.descriptors()) {
    const auto inode = socketInode(target);
    if (!inode) continue;
    const auto found = std::ranges::lower_bound(*listeners_, *inode, {}, &Listener::inode);
    if (found != listeners_->end() && found->inode == *inode) ports.push_back(found->port);
  }
  return eachPortOnce(std::move(ports));
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
