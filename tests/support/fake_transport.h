// A socket transport without sockets: answers from prepared replies and remembers what was asked. May be
// asked by several threads at once.
#pragma once

#include <condition_variable>
#include <mutex>

#include "system/unix_socket.h"
#include "tests/support/testing.h"

namespace tarnwick {

class FakeTransport final : public SocketTransport {
 public:
  struct Asked {
    std::string socket;
    std::string request;
    ExchangeLimits limits;
  };

  std::set<std::string> sockets{"/engine.sock"};
  std::set<std::string> silent;                // sockets behind which nobody answers
  std::map<std::string, std::string> replies;  // by the request line without " HTTP/1.0"
  std::function<void()> onAsked = [] {};       // run for every request
  std::size_t crowd = 0;                       // statistics are held back until so many are asked at once

  bool reachable(const std::string& path) override { return sockets.count(path) != 0; }

  std::optional<std::string> exchange(const std::string& path, std::string_view request,
                                      const ExchangeLimits& limits) override {
    std::unique_lock lock(mutex_);
    asked_.push_back({path, std::string(request), limits});
    onAsked();
    const std::string line(request.substr(0, request.find(" HTTP/1.0")));
    if (line.find("/stats?") != std::string::npos) gather(lock);
    return silent.contains(path) ? std::nullopt : answerOf(replies, line);
  }

  std::vector<Asked> asked() {
    const std::lock_guard lock(mutex_);
    return asked_;
  }
  std::size_t mostAtOnce() {
    const std::lock_guard lock(mutex_);
    return most_;
  }

 private:
  // Waits, within a generous limit, until `crowd` callers are in here together.
  void gather(std::unique_lock<std::mutex>& lock) {
    ++inside_;
    most_ = std::max(most_, inside_);
    changed_.notify_all();
    changed_.wait_for(lock, std::chrono::seconds(30), [this] { return most_ >= crowd; });
    --inside_;
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Asked> asked_;
  std::size_t inside_ = 0;
  std::size_t most_ = 0;
};

}  // namespace tarnwick
