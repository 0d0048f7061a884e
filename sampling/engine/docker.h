// A small client of the container engine's HTTP API over its Unix-domain socket: which containers run, how
// much memory each holds, and the request that stops one. The request is HTTP/1.0 by hand, so that a reply
// simply ends where the stream ends. Nothing here reports an error: an engine that is not there, falls
// silent or refuses is an absent reply. Remembers only which engine answered. Used by one thread at a time,
// but for statistics().
#pragma once

#include <atomic>
#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "records/snapshot.h"
#include "system/check_limits.h"
#include "system/unix_socket.h"

namespace tarnwick {

class Docker {
 public:
  // `transport` outlives this object and is used by several threads at once. `places` are the sockets where
  // an engine may be, the preferred one first.
  Docker(SocketTransport& transport, std::vector<std::string> places);

  // There is an engine's socket that this user may open.
  bool present() const;

  // So long may all the questions of one check take together, in seconds.
  static constexpr double checkSeconds = 5;

  // One request, to the engine that answered the last list, else to the first place that answers at all; the
  // body of a successful reply, absent otherwise. `timeout`: whole seconds that connecting
  // or a single read may take, at least 1; the whole reply may take twice that. Nothing waits beyond the
  // deadline.
  std::optional<std::string> dockerAPI(std::string_view method, std::string_view path, int timeout,
                                       const Deadline& deadline = {}) const;

  // What the engine that answered the last list says about a container of it; its id is a plain one. Asks no
  // file, so that several threads can ask side by side.
  std::optional<std::string> statistics(const std::string& container, const Deadline& deadline) const;

  // The running containers of the first engine that answers, in its order; empty when none answers. The
  // memory of all but the `measured` ones is asked side by side, because a real engine takes a full second
  // for each. `limits`: of the check that asks, where an engine is written down that left a question without
  // an answer for its whole time; null: there is no check.
  std::vector<Container> dockerContainers(const std::set<std::string>& measured = {},
                                          CheckLimits* limits = nullptr) const;

  // Asks the engine to stop a container and waits until it has. False when it did not.
  bool stop(const std::string& container) const;

 private:
  static constexpr std::size_t nobody = static_cast<std::size_t>(-1);

  // Looked for anew each time, because an engine may start later than we do. A socket alone is no engine: one
  // that ended leaves its own behind.
  std::optional<std::string> replyFrom(std::size_t place, const std::string& request, int timeout,
                                       const Deadline& deadline) const;

  SocketTransport& transport_;
  const std::vector<std::string> places_;
  mutable std::atomic<std::size_t> answering_{nobody};  // whose containers were listed
};

}  // namespace tarnwick
