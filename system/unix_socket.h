// One question to a service behind a Unix-domain stream socket: connect, write, read to the end. Nothing
// here reports an error: what goes wrong is an absent reply. Exchanges are for any thread, each blocks only
// its own and never longer than its limits say, whatever the other end does.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "system/files.h"

namespace tarnwick {

struct ExchangeLimits {
  double silence = 0;          // seconds that connecting, writing or a single read may wait
  double total = 0;            // seconds for everything together: an end that drips is cut off here
  std::size_t replyBytes = 0;  // a longer reply is absent
};

class SocketTransport {
 public:
  virtual ~SocketTransport() = default;

  // There is a socket at `path` that this user may open. Nobody need be listening. One thread at a time.
  virtual bool reachable(const std::string& path) = 0;

  // Sends `request` and returns everything that comes back until the other end closes, fails, or a time
  // limit passes. Absent when nothing came, or the request was not taken whole.
  virtual std::optional<std::string> exchange(const std::string& path, std::string_view request,
                                              const ExchangeLimits& limits) = 0;
};

class UnixSocketTransport final : public SocketTransport {
 public:
  // `files` asks whether a socket is there, for one may lie in a folder that does not answer; null: the
  // system is asked here and now.
  explicit UnixSocketTransport(Files* files = nullptr) : files_(files) {}

  bool reachable(const std::string& path) override;

  // A path that does not fit a socket address is absent; it is never cut, which would name another socket.
  std::optional<std::string> exchange(const std::string& path, std::string_view request,
                                      const ExchangeLimits& limits) override;

 private:
  Files* files_;
};

}  // namespace tarnwick
