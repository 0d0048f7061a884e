#include "system/posix/guarded_files.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace tarnwick {
namespace {

constexpr const char* someFiles = "some files";

bool lies(std::string_view path, std::string_view folder) {
  return path.starts_with(folder) &&
         (folder.ends_with('/') || path.size() == folder.size() || path[folder.size()] == '/');
}

// Of the path of the folder that holds it; that of "/" for what lies there.
std::size_t folderBytes(const std::string& path) { return std::max<std::size_t>(path.rfind('/'), 1); }

}  // namespace

FileAnswer GuardedFiles::ask(const FileQuestion& question) {
  if (!question.path.starts_with('/')) return std::nullopt;
  if (!hasTime() || !mayVisit(question.path)) return std::nullopt;
  const double seconds = limits_.within(question.changes() ? changeSeconds : answerSeconds).left();
  FileAnswer answer;
  switch (worker_.ask(question, seconds, answer)) {
    case FileWorker::Outcome::answered:
      break;
    case FileWorker::Outcome::late:
      miss(leaveAlone(question.path, question.path.substr(0, folderBytes(question.path))));
      break;
    case FileWorker::Outcome::broken:
      ++misses_;
      break;
  }
  return answer;
}

bool GuardedFiles::hasTime() {
  if (!limits_.deadline().passed()) return true;
  miss(someFiles);
  return false;
}

bool GuardedFiles::mayVisit(const std::string& path) {
  const double now = clock_.uptime();
  const auto found = std::ranges::find_if(
      stalled_, [&](const auto& entry) { return entry.second > now && lies(path, entry.first); });
  if (found == stalled_.end()) return true;
  miss(found->first);
  return false;
}

// A link in a path may lead to another file system than its text says. Where that is one of this machine's
// own, nothing is known of the others that it holds: only the folder is left alone, and not for long.
std::string GuardedFiles::leaveAlone(const std::string& path, const std::string& folderOfIt) {
  const std::vector<Mount> all = mounts();
  const Mount* mount = mountOf(path, all);
  const bool local = mount == nullptr || isLocal(path, all);
  std::string folder = local ? folderOfIt : mount->point;
  const double now = clock_.uptime();
  std::erase_if(stalled_, [now](const auto& entry) { return entry.second <= now; });
  stalled_[folder] = now + (local ? std::min(limits_.deadline().left(), stalledSeconds) : stalledSeconds);
  return folder;
}

// Whoever was sent there names itself.
void GuardedFiles::hasStalled(const std::string& path) {
  leaveAlone(path, path);
  ++misses_;
}

void GuardedFiles::miss(const std::string& whom) {
  ++misses_;
  limits_.leaveOut(whom);
}

FileAnswer HomeFiles::ask(const FileQuestion& question) {
  if (question.changes() || !question.path.starts_with('/')) return files_.ask(question);
  Way way = follow(question.path);
  if (way.local) return answerTo(question);
  FileQuestion behindLinks = question;
  behindLinks.path = std::move(way.path);
  return files_.ask(behindLinks);
}

// Most questions are about many files of few folders, so the way is gone to each folder once.
Way HomeFiles::follow(const std::string& path) {
  if (!readAt_ || clock_.uptime() - *readAt_ > mountSeconds)
    remember(distantMounts().value_or(std::vector<std::string>{"/"}));  // nothing is known: all of it
  const std::string_view folder = std::string_view(path).substr(0, folderBytes(path));
  auto known = folders_.find(folder);
  if (known == folders_.end()) known = folders_.emplace(folder, wayTo(std::string(folder), distant_)).first;
  const Way& way = known->second;
  const std::string_view rest = std::string_view(path).substr(folder.size());
  if (way.local) return wayFrom(way, rest, distant_);
  return {std::string(way.path).append("/").append(rest), false};
}

void HomeFiles::remember(std::vector<std::string> distant) {
  distant_ = std::move(distant);
  folders_.clear();
  readAt_ = clock_.uptime();
}

}  // namespace tarnwick
