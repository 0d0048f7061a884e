#include "system/posix/file_worker.h"

#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>

#include "system/environment.h"
#include "system/posix/differences.h"
#include "system/posix/file_answers.h"
#include "system/posix/spawned_process.h"

namespace tarnwick {
namespace {

using Instant = std::chrono::steady_clock::time_point;

// One question's way to the worker and back, within its time.
class Errand {
 public:
  Errand(int socket, double seconds)
      : socket_(socket),
        end_(std::chrono::steady_clock::now() +
             std::chrono::duration_cast<Instant::duration>(std::chrono::duration<double>(seconds))) {}

  // Did the time run out? Else the worker is gone.
  bool isLate() const { return late_; }

  bool send(const void* bytes, std::size_t count) { return move(POLLOUT, const_cast<void*>(bytes), count); }
  bool receive(void* bytes, std::size_t count) { return move(POLLIN, bytes, count); }

 private:
  bool move(short direction, void* bytes, std::size_t count) {
    auto* at = static_cast<char*>(bytes);
    while (count > 0) {
      if (!isReady(direction)) return false;
      const ssize_t moved = direction == POLLIN ? ::recv(socket_, at, count, MSG_DONTWAIT)
                                                : ::send(socket_, at, count, MSG_DONTWAIT | quietFlag());
      if (moved < 0 && (errno == EINTR || errno == EAGAIN)) continue;
      if (moved <= 0) return false;
      at += moved;
      count -= static_cast<std::size_t>(moved);
    }
    return true;
  }

  bool isReady(short direction) {
    for (;;) {
      const auto left = std::chrono::ceil<std::chrono::milliseconds>(end_ - std::chrono::steady_clock::now());
      pollfd one{socket_, direction, 0};
      const int ready = ::poll(&one, 1, static_cast<int>(std::max<std::int64_t>(left.count(), 0)));
      if (ready > 0) return true;
      if (ready < 0 && errno == EINTR) continue;
      late_ = ready == 0;
      return false;
    }
  }

  int socket_;
  Instant end_;
  bool late_ = false;
};

bool carry(Errand& errand, const FileQuestion& question, FileAnswer& answer) {
  const FileQuestionHead head{.kind = static_cast<std::uint32_t>(question.kind),
                              .pathBytes = static_cast<std::uint32_t>(question.path.size()),
                              .bytes = question.changes() ? question.content.size() : question.bytes};
  std::string message(reinterpret_cast<const char*>(&head), sizeof head);
  message += question.path;
  message += question.content;
  FileAnswerHead reply;
  if (!errand.send(message.data(), message.size()) || !errand.receive(&reply, sizeof reply)) return false;
  if (reply.bytes > longestFileAnswer) return false;
  std::string bytes(reply.bytes, '\0');
  if (!errand.receive(bytes.data(), bytes.size())) return false;
  if (reply.found != 0) answer = std::move(bytes);
  return true;
}

}  // namespace

FileWorker::Outcome FileWorker::ask(const FileQuestion& question, double seconds, FileAnswer& answer) {
  layToRest();
  if (question.path.size() > longestFilePath || question.content.size() > longestFileAnswer)
    return Outcome::answered;
  if (pid_ == 0 && !start()) return Outcome::broken;
  Errand errand(socket_.number(), seconds);
  if (carry(errand, question, answer)) return Outcome::answered;
  abandon();
  return errand.isLate() ? Outcome::late : Outcome::broken;
}

bool FileWorker::start() {
  auto [mine, its] = openQuietPair();
  if (!mine.isOpen() || !its.isOpen()) return false;
  pid_ = spawnProcess({.path = program_,
                       .words = {fileWorkerWord},
                       .variables = environmentVariables(),
                       .input = its.number()});
  if (pid_ > 0) socket_ = std::move(mine);
  return pid_ > 0;
}

void FileWorker::abandon() {
  socket_.close();
  ::kill(pid_, SIGKILL);
  abandoned_.push_back(pid_);
  pid_ = 0;
  layToRest();
}

// It waits for its socket and for nothing else, so it ends at once.
void FileWorker::dismiss() {
  socket_.close();
  layToRest();
  if (pid_ == 0) return;
  ::kill(pid_, SIGKILL);
  while (::waitpid(pid_, nullptr, 0) < 0 && errno == EINTR) {
  }
  pid_ = 0;
}

// Whoever cannot be ended is not waited for.
void FileWorker::layToRest() {
  std::erase_if(abandoned_, [](pid_t pid) { return ::waitpid(pid, nullptr, WNOHANG) != 0; });
}

}  // namespace tarnwick
