#include "sampling/engine/docker.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <future>
#include <system_error>
#include <utility>

#include "records/limits.h"
#include "sampling/engine/engine_json.h"
#include "sampling/engine/http_reply.h"

namespace tarnwick {
namespace {

constexpr std::string_view listPath = "/containers/json";
constexpr std::string_view listRequest = "GET /containers/json ";
constexpr int askSeconds = 3;
constexpr int stopSeconds = 15;     // the engine gives a container 10 s to end by itself
constexpr int totalTimeFactor = 2;  // time-outs that a reply may take in all
constexpr std::size_t mostAtOnce = 8;
constexpr int unansweredInARow = 16;  // an engine that leaves so many without an answer is asked no more

// No blank and no control character may get into the request line.
bool isRequestWord(std::string_view word) {
  return !word.empty() && std::all_of(word.begin(), word.end(), [](char c) { return c > ' ' && c < '\x7f'; });
}

// Fills in `mem` of the containers, several threads taking the next one each.
class MemoryRound {
 public:
  MemoryRound(const Docker& docker, std::vector<Container>& containers, const std::set<std::string>& measured)
      : docker_(docker), containers_(containers), measured_(measured) {}

  // Returns when every container has been asked: letting go of a task waits for it.
  void run() {
    std::vector<std::future<void>> others;
    const std::size_t workers = std::min(mostAtOnce, containers_.size());
    try {
      for (std::size_t started = 1; started < workers; ++started) {
        others.push_back(std::async(std::launch::async, [this] { work(); }));
      }
    } catch (const std::system_error&) {
      // No more threads to be had: those that started, and this one, do it all.
    }
    work();
  }

 private:
  void work() {
    for (;;) {
      const std::size_t mine = next_.fetch_add(1);
      if (mine >= containers_.size() || unanswered_.load() >= unansweredInARow) return;
      ask(containers_[mine]);
    }
  }

  void ask(Container& container) {
    if (!isPlainContainerId(container.id) || measured_.contains(container.id)) return;
    const std::string path = "/containers/" + container.id + "/stats?stream=false&one-shot=true";
    if (const std::optional<std::string> body = docker_.dockerAPI("GET", path, askSeconds)) {
      container.mem = memoryOf(*body);
      unanswered_.store(0);
    } else {
      unanswered_.fetch_add(1);
    }
  }

  const Docker& docker_;
  std::vector<Container>& containers_;
  const std::set<std::string>& measured_;
  std::atomic<std::size_t> next_{0};
  std::atomic<int> unanswered_{0};
};

}  // namespace

Docker::Docker(SocketTransport& transport, std::vector<std::string> places)
    : transport_(transport), places_(std::move(places)) {}

bool Docker::present() const {
  return std::any_of(places_.begin(), places_.end(),
                     [this](const std::string& place) { return transport_.reachable(place); });
}

std::optional<std::string> Docker::replyFrom(std::size_t place, const std::string& request,
                                             int timeout) const {
  if (!transport_.reachable(places_[place])) return std::nullopt;
  const double silence = std::max(timeout, 1);
  const bool isList = request.starts_with(listRequest);
  const ExchangeLimits limits{silence, silence * totalTimeFactor, isList ? mostListReply : mostOtherReply};
  return transport_.exchange(places_[place], request, limits);
}

std::optional<std::string> Docker::dockerAPI(std::string_view method, std::string_view path,
                                             int timeout) const {
  if (!isRequestWord(method) || !isRequestWord(path)) return std::nullopt;
  std::string request(method);
  request += ' ';
  request += path;
  request += " HTTP/1.0\r\nHost: docker\r\nContent-Length: 0\r\n\r\n";
  std::size_t place = answering_.load();
  std::optional<std::string> reply;
  if (place != nobody) {
    reply = replyFrom(place, request, timeout);
  } else {
    for (place = 0; place < places_.size() && !reply; ++place) reply = replyFrom(place, request, timeout);
    if (reply) answering_.store(place - 1);
  }
  if (!reply) return std::nullopt;
  const std::optional<std::string_view> body = successfulBody(*reply);
  if (!body) return std::nullopt;
  reply->erase(0, reply->size() - body->size());
  return reply;
}

std::vector<Container> Docker::dockerContainers(const std::set<std::string>& measured) const {
  answering_.store(nobody);
  const std::optional<std::string> list = dockerAPI("GET", listPath, askSeconds);
  if (!list) return {};
  std::vector<Container> containers = containersOf(*list);
  MemoryRound(*this, containers, measured).run();
  return containers;
}

bool Docker::stop(const std::string& container) const {
  if (!isPlainContainerId(container)) return false;
  return dockerAPI("POST", "/containers/" + container + "/stop", stopSeconds).has_value();
}

}  // namespace tarnwick
