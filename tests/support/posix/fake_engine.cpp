#include "tests/support/posix/fake_engine.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "system/posix/differences.h"

namespace tarnwick {

FakeEngine::FakeEngine(std::string path, Answer answer) : path_(std::move(path)), answer_(std::move(answer)) {
  listener_ = listenAt(path_, 64);
  acceptor_ = std::thread([this] { accept(); });
}

FakeEngine::~FakeEngine() {
  ::shutdown(listener_.number(), SHUT_RDWR);
  acceptor_.join();
}

void FakeEngine::accept() {
  for (;;) {
    const int connection = ::accept(listener_.number(), nullptr, nullptr);
    if (connection < 0) return;
    ++connections_;
    serve(connection);
  }
}

void FakeEngine::serve(int connection) {
  std::string request;
  char byte = 0;
  while (request.find("\r\n\r\n") == std::string::npos && ::recv(connection, &byte, 1, 0) == 1)
    request += byte;
  answer_(connection, request);
  ::close(connection);
}

Descriptor listenAt(const std::string& path, int waiting) {
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

bool sendAll(int connection, const std::string& bytes) {
  std::size_t sent = 0;
  while (sent < bytes.size()) {
    const ssize_t now = sendQuietly(connection, bytes.data() + sent, bytes.size() - sent);
    if (now <= 0) return false;
    sent += static_cast<std::size_t>(now);
  }
  return true;
}

void waitForClose(int connection) {
  char byte = 0;
  while (::recv(connection, &byte, 1, 0) > 0) {
  }
}

}  // namespace tarnwick
