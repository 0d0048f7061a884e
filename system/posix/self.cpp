#include "system/self.h"

#include <pwd.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <utility>
#include <vector>

#include "system/environment.h"
#include "system/posix/local_way.h"
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

}  // namespace

std::string homeFolder(const std::optional<std::string>& environment,
                       const std::function<std::string()>& database) {
  std::string home = environment && environment->starts_with('/') ? *environment : database();
  if (!home.starts_with('/')) return "/";
  while (home.size() > 1 && home.ends_with('/')) home.pop_back();
  return home;
}

std::string resolvedHome(const std::string& home, const DistantPoints& distant) {
  if (!distant) return realFolder(home).value_or(home);
  const Way way = wayTo(home, *distant);
  return way.local && !pathExists(way.path) ? home : way.path;
}

Self readSelf(const DistantPoints& distant) {
  const uid_t uid = getuid();
  const std::string home = homeFolder(environmentVariable("HOME"), [uid] { return homeFromDatabase(uid); });
  return {.pid = getpid(), .uid = uid, .home = resolvedHome(home, distant)};
}

double processorMilliseconds() {
  rusage usage = {};
  if (getrusage(RUSAGE_SELF, &usage) != 0) return 0;
  const auto wholeSeconds = usage.ru_utime.tv_sec + usage.ru_stime.tv_sec;
  const auto microseconds = usage.ru_utime.tv_usec + usage.ru_stime.tv_usec;
  return static_cast<double>(wholeSeconds) * 1000 + static_cast<double>(microseconds) / 1000;
}

}  // namespace tarnwick
