// A server that lost its starter, and a clock that is thirteen hours ahead, so that nobody has to wait until
// it is forgotten.
#pragma once

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "records/basics.h"
#include "system/clock.h"
#include "tests/support/testing.h"

namespace tarnwick {

struct ClockAhead : SystemClock {
  Timestamp now() override { return SystemClock::now() + Seconds{13 * 3'600}; }
};

// A server that lost its starter: it listens in `folder` on a port of the system's choice.
class OrphanServer {
 public:
  explicit OrphanServer(const std::string& folder) {
    std::array<int, 2> channel{};
    if (::pipe(channel.data()) != 0) return;
    const pid_t starter = ::fork();
    if (starter == 0) {
      if (::fork() == 0) serve(folder, channel[1]);
      ::_exit(0);
    }
    ::waitpid(starter, nullptr, 0);
    if (::read(channel[0], &facts_, sizeof facts_) != static_cast<ssize_t>(sizeof facts_)) facts_ = {};
    for (const int end : channel) ::close(end);
  }
  ~OrphanServer() {
    if (facts_.pid > 1) ::kill(facts_.pid, SIGKILL);
  }
  OrphanServer(const OrphanServer&) = delete;
  OrphanServer& operator=(const OrphanServer&) = delete;

  Pid pid() const { return facts_.pid; }
  int port() const { return facts_.port; }

 private:
  struct Facts {
    Pid pid = 0;
    int port = 0;
  };

  [[noreturn]] static void serve(const std::string& folder, int report) {
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    const bool listens = ::chdir(folder.c_str()) == 0 && ::bind(listener, generic, length) == 0 &&
                         ::listen(listener, 1) == 0 && ::getsockname(listener, generic, &length) == 0;
    const Facts facts{::getpid(), listens ? ntohs(address.sin_port) : 0};
    if (::write(report, &facts, sizeof facts) < 0) ::_exit(1);
    while (true) ::pause();
  }

  Facts facts_;
};

}  // namespace tarnwick
