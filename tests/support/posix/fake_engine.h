// A service on a real Unix-domain socket inside the test program, which serves one caller after the other.
// What it does with a request is up to the test.
#pragma once

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "system/posix/descriptor.h"
#include "system/posix/differences.h"
#include "tests/support/testing.h"

namespace tarnwick {

// A socket bound to `path` that lets so many callers wait.
inline Descriptor listenAt(const std::string& path, int waiting) {
  Descriptor listener = openQuietSocket();
  sockaddr_un address{};
  if (path.size() >= sizeof address.sun_path) fault("the fake engine's path is too long");
  address.sun_family = AF_UNIX;
  std::copy(path.begin(), path.end(), address.sun_path);
  if (::bind(listener.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
      ::listen(listener.number(), waiting) != 0)
    fault("the fake engine cannot listen");
  return listener;
}

// Sends all of it; false once the other end is gone.
inline bool sendAll(int connection, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t now = sendQuietly(connection, bytes.data(), bytes.size());
    if (now <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(now));
  }
  return true;
}

// Returns when the other end has closed.
inline void waitForClose(int connection) {
  char byte = 0;
  while (::recv(connection, &byte, 1, 0) > 0) {
  }
}

class FakeEngine {
 public:
  // Called once per connection with what came up to the first blank line. The connection is closed after.
  using Answer = std::function<void(int connection, const std::string& request)>;

  FakeEngine(const std::string& path, Answer answer)
      : answer_(std::move(answer)), listener_(listenAt(path, 64)), acceptor_([this] { accept(); }) {}
  ~FakeEngine() {
    end_.first.close();
    acceptor_.join();
  }

  int connections() const { return connections_.load(); }

 private:
  // Not every system wakes an accept() whose socket is shut down, nor lets what was accepted be as quiet as
  // the listener: so it is asked for beforehand, and the signal of a broken pipe is held back.
  void accept() {
    sigset_t broken;
    sigemptyset(&broken);
    sigaddset(&broken, SIGPIPE);
    ::pthread_sigmask(SIG_BLOCK, &broken, nullptr);
    std::array<pollfd, 2> wanted{{{listener_.number(), POLLIN, 0}, {end_.second.number(), POLLIN, 0}}};
    while (::poll(wanted.data(), wanted.size(), -1) > 0 && wanted[1].revents == 0) {
      const Descriptor connection(::accept(listener_.number(), nullptr, nullptr));
      if (!connection.isOpen()) return;
      ++connections_;
      std::string request;
      char byte = 0;
      while (request.find("\r\n\r\n") == std::string::npos && ::recv(connection.number(), &byte, 1, 0) == 1)
        request += byte;
      answer_(connection.number(), request);
    }
  }

  const Answer answer_;
  Descriptor listener_;
  std::pair<Descriptor, Descriptor> end_ = openQuietPair();  // has come when the first is closed
  std::atomic<int> connections_{0};
  std::thread acceptor_;
};

}  // namespace tarnwick
