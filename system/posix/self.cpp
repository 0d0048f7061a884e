#include "system/self.h"

#include <pwd.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <vector>

#include "system/environment.h"
#include "system/mounts.h"
#include "system/small_file.h"

namespace tarnwick {
namespace {

// The user database's home folder; empty when the user is not in it.
std::string homeFromDatabase(uid_t uid) {
  constexpr std::size_t mostBytes = 1'048'576;
  passwd entry = {};
  passwd* found = nullptr;
  for (std::size_t size = 4096; size <= mostBytes; size *= 2) {
    std::vector<char> buffer(size);
    const int error = getpwuid_r(uid, &entry, buffer.data(), buffer.size(), &found);
    if (error == ERANGE) continue;
    return error == 0 && found != nullptr && entry.pw_dir != nullptr ? entry.pw_dir : "";
  }
  return {};
}

std::optional<std::string> realFolder(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
  if (!real) return std::nullopt;
  return real.get();
}

// Takes the first part of a path, without slashes, off the front of it.
std::string takePart(std::string& path) {
  const std::size_t start = std::min(path.find_first_not_of('/'), path.size());
  const std::size_t end = std::min(path.find('/', start), path.size());
  std::string part = path.substr(start, end - start);
  path.erase(0, end);
  return part;
}

// Absent for what is no link.
std::optional<std::string> linkTarget(const std::string& path) {
  std::array<char, 4'096> target{};
  const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
  if (length <= 0) return std::nullopt;
  return std::string(target.data(), static_cast<std::size_t>(length));
}

}  // namespace

std::string homeFolder(const std::optional<std::string>& environment,
                       const std::function<std::string()>& database) {
  std::string home = environment && environment->starts_with('/') ? *environment : database();
  if (!home.starts_with('/')) return "/";
  while (home.size() > 1 && home.ends_with('/')) home.pop_back();
  return home;
}

std::string resolvedHome(const std::string& home) {
  const std::vector<Mount> all = mounts();
  if (all.empty()) return realFolder(home).value_or(home);
  constexpr int mostLinks = 40;
  std::string done;  // has no links
  std::string rest = home;
  for (int links = 0; !rest.empty();) {
    const std::string part = takePart(rest);
    if (part.empty() || part == ".") continue;
    if (part == "..") {
      done.resize(std::min(done.rfind('/'), done.size()));
      continue;
    }
    std::string next = done;
    next.append("/").append(part);
    if (!isLocal(next, all)) return next + rest;
    const auto target = linkTarget(next);
    if (!target) {
      done = next;
    } else if (++links > mostLinks) {
      return home;
    } else {
      if (target->starts_with('/')) done.clear();
      rest.insert(0, *target);
    }
  }
  if (done.empty()) return "/";
  return pathExists(done) ? done : home;
}

Self readSelf() {
  const uid_t uid = getuid();
  const std::string home = homeFolder(environmentVariable("HOME"), [uid] { return homeFromDatabase(uid); });
  return {.pid = getpid(), .uid = uid, .home = resolvedHome(home)};
}

double processorMilliseconds() {
  rusage usage = {};
  if (getrusage(RUSAGE_SELF, &usage) != 0) return 0;
  const auto wholeSeconds = usage.ru_utime.tv_sec + usage.ru_stime.tv_sec;
  const auto microseconds = usage.ru_utime.tv_usec + usage.ru_stime.tv_usec;
  return static_cast<double>(wholeSeconds) * 1000 + static_cast<double>(microseconds) / 1000;
}

}  // namespace tarnwick
