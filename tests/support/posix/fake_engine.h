// A service on a real Unix-domain socket inside the test program, which serves one caller after the other.
// What it does with a request is up to the test.
#pragma once

#include "system/posix/descriptor.h"
#include "tests/support/testing.h"

namespace tarnwick {

class FakeEngine {
 public:
  // Called once per connection with what came up to the first blank line. The connection is closed after.
  using Answer = std::function<void(int connection, const std::string& request)>;

  FakeEngine(std::string path, Answer answer);
  ~FakeEngine();

  int connections() const { return connections_.load(); }

 private:
  void accept();
  void serve(int connection);

  const std::string path_;
  const Answer answer_;
  Descriptor listener_;
  std::atomic<int> connections_{0};
  std::thread acceptor_;
};

// A socket bound to `path` that lets so many callers wait.
Descriptor listenAt(const std::string& path, int waiting);

// Sends all of it; false once the other end is gone.
bool sendAll(int connection, const std::string& bytes);

// Returns when the other end has closed.
void waitForClose(int connection);

}  // namespace tarnwick
