// The one door through which questions about foreign folders go. A worker process asks the system; when an
// answer takes too long the worker is abandoned and the file system that it hangs in is not asked for some
// minutes. Everybody else gets a new worker. The process is started at the first question, so a check that
// has none costs nothing. Used by one thread at a time.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "system/check_limits.h"
#include "system/clock.h"
#include "system/files.h"
#include "system/mounts.h"
#include "system/posix/file_worker.h"
#include "system/posix/local_way.h"

namespace tarnwick {

class GuardedFiles final : public Files {
 public:
  // So long may one answer take, in seconds.
  static constexpr double answerSeconds = 1;

  // So long may a change take, which is not asked for in a check; seconds.
  static constexpr double changeSeconds = 5;

  // So long is a file system not asked that has missed; seconds. One of this machine's own, which is only
  // slow, is asked again in the next check.
  static constexpr double stalledSeconds = 300;

  // `program` is this program, see file_answers.h. Clock and limits must outlive the object.
  GuardedFiles(std::string program, Clock& clock, CheckLimits& limits)
      : worker_(std::move(program)), clock_(clock), limits_(limits) {}

  FileAnswer ask(const FileQuestion& question) override;
  std::size_t misses() const override { return misses_; }
  bool mayVisit(const std::string& path) override;
  void hasStalled(const std::string& path) override;
  bool hasTime() override;
  void rest() override { worker_.dismiss(); }

 private:
  std::string leaveAlone(const std::string& path, const std::string& folderOfIt);
  void miss(const std::string& whom);

  FileWorker worker_;
  Clock& clock_;
  CheckLimits& limits_;
  std::size_t misses_ = 0;
  std::map<std::string, double> stalled_;  // folders, and until when (uptime) nobody is sent there
};

// The same for the user's own places and the system's, the home folder say: where the way to them, through
// all links, is local, they are asked here and now. Changes are always the worker's, because it finishes what
// it has begun. `files` must outlive it.
class HomeFiles final : public Files {
 public:
  // `distant`: what the list of mounts says now, when it has been read already.
  HomeFiles(Files& files, Clock& clock, DistantPoints distant = {}) : files_(files), clock_(clock) {
    if (distant) remember(std::move(*distant));
  }

  FileAnswer ask(const FileQuestion& question) override;
  std::size_t misses() const override { return files_.misses(); }
  void rest() override { files_.rest(); }

 private:
  // With what the links on the way lead to in the place of the path.
  Way follow(const std::string& path);

  void remember(std::vector<std::string> distant);

  // The list of mounts is good for so long, in seconds.
  static constexpr double mountSeconds = 30;

  Files& files_;
  Clock& clock_;
  std::vector<std::string> distant_;
  std::map<std::string, Way, std::less<>> folders_;  // as they are named, while the list of mounts is good
  std::optional<double> readAt_;                     // uptime
};

}  // namespace tarnwick
