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

std::string requestFor(std::string_view method, std::string_view path) {
  std::string request(method);
  request += ' ';
  request += path;
  request += " HTTP/1.0\r\nHost: docker\r\nContent-Length: 0\r\n\r\n";
  return request;
}

// Of a successful reply.
std::optional<std::string> bodyOf(std::optional<std::string> reply) {
  const auto body = reply ? successfulBody(*reply) : std::nullopt;
  if (!body) return std::nullopt;
  reply->erase(0, reply->size() - body->size());
  return reply;
}

// Did a question that was asked when `before` seconds were left use up all the time that it may take?
bool tookItsTime(const Deadline& deadline, double before) {
  return deadline.passed() || before - deadline.left() >= askSeconds;
}

// Fills in `mem` of the containers, several threads taking the next one each.
class MemoryRound {
 public:
  MemoryRound(const Docker& docker, std::vector<Container>& containers, const std::set<std::string>& measured,
              const Deadline& deadline)
      : docker_(docker), containers_(containers), measured_(measured), deadline_(deadline) {}

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

  // Did an answer not come in its time?
  bool wasLate() const { return late_.load(); }

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
    const double before = deadline_.left();
    if (const std::optional<std::string> body = docker_.statistics(container.id, deadline_)) {
      container.mem = memoryOf(*body);
      unanswered_.store(0);
    } else {
      unanswered_.fetch_add(1);
      if (tookItsTime(deadline_, before)) late_.store(true);
    }
  }

  const Docker& docker_;
  std::vector<Container>& containers_;
  const std::set<std::string>& measured_;
  const Deadline deadline_;
  std::atomic<std::size_t> next_{0};
  std::atomic<bool> late_{false};
  std::atomic<int> unanswered_{0};
};

}  // namespace

Docker::Docker(SocketTransport& transport, std::vector<std::string> places)
    : transport_(transport), places_(std::move(places)) {}

bool Docker::present() const {
  return std::any_of(places_.begin(), places_.end(),
                     [this](const std::string& place) { return transport_.reachable(place); });
}

std::optional<std::string> Docker::replyFrom(std::size_t place, const std::string& request, int timeout,
                                             const Deadline& deadline) const {
  const double left = deadline.left();
  if (left <= 0) return std::nullopt;
  const double silence = std::max(timeout, 1);
  const std::size_t most = request.starts_with(listRequest) ? mostListReply : mostOtherReply;
  const ExchangeLimits limits{std::min(silence, left), std::min(silence * totalTimeFactor, left), most};
  return transport_.exchange(places_[place], request, limits);
}

std::optional<std::string> Docker::dockerAPI(std::string_view method, std::string_view path, int timeout,
                                             const Deadline& deadline) const {
  if (!isRequestWord(method) || !isRequestWord(path)) return std::nullopt;
  const std::string request = requestFor(method, path);
  const std::size_t known = answering_.load();
  std::optional<std::string> reply;
  for (std::size_t place = 0; place < places_.size() && !reply && !deadline.passed(); ++place) {
    if ((known != nobody && place != known) || !transport_.reachable(places_[place])) continue;
    reply = replyFrom(place, request, timeout, deadline);
    if (reply) answering_.store(place);
  }
  return bodyOf(std::move(reply));
}

std::optional<std::string> Docker::statistics(const std::string& container, const Deadline& deadline) const {
  const std::size_t place = answering_.load();
  if (place == nobody) return std::nullopt;
  const std::string path = "/containers/" + container + "/stats?stream=false&one-shot=true";
  return bodyOf(replyFrom(place, requestFor("GET", path), askSeconds, deadline));
}

std::vector<Container> Docker::dockerContainers(const std::set<std::string>& measured,
                                                CheckLimits* limits) const {
  answering_.store(nobody);
  const Deadline deadline = limits == nullptr ? Deadline() : limits->within(checkSeconds);
  const double before = deadline.left();
  const auto list = dockerAPI("GET", listPath, askSeconds, deadline);
  std::vector<Container> containers = list ? containersOf(*list) : std::vector<Container>();
  const bool noList = containers.empty() && tookItsTime(deadline, before);  // or one that broke off
  MemoryRound round(*this, containers, measured, deadline);
  round.run();
  if ((noList || round.wasLate()) && limits != nullptr) limits->leaveOut("the container engine");
  return containers;
}

bool Docker::stop(const std::string& container) const {
  if (!isPlainContainerId(container)) return false;
  return dockerAPI("POST", "/containers/" + container + "/stop", stopSeconds).has_value();
}

}  // namespace tarnwick
