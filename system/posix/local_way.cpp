#include "system/posix/local_way.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>

#include "system/mounts.h"

namespace tarnwick {
namespace {

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
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): zeros would cost more than the call
  std::array<char, 4'096> target;
  const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
  if (length <= 0) return std::nullopt;
  return std::string(target.data(), static_cast<std::size_t>(length));
}

}  // namespace

Way wayTo(const std::string& path, const std::vector<std::string>& distant) {
  return wayFrom({}, path, distant);
}

Way wayFrom(const Way& folder, const std::string& path, const std::vector<std::string>& distant) {
  constexpr int mostLinks = 40;
  std::string done = folder.path == "/" ? std::string() : folder.path;  // has no links
  std::string rest = path;
  for (int links = 0; !rest.empty();) {
    const std::string part = takePart(rest);
    if (part.empty() || part == ".") continue;
    if (part == "..") {
      done.resize(std::min(done.rfind('/'), done.size()));
      continue;
    }
    std::string next = done;
    next.append("/").append(part);
    if (isDistant(next, distant)) return {next + rest, false};
    const auto target = linkTarget(next);
    if (!target) {
      done = std::move(next);
    } else if (++links > mostLinks) {
      return {std::move(next), false};
    } else {
      if (target->starts_with('/')) done.clear();
      rest.insert(0, *target);
    }
  }
  return {done.empty() ? "/" : done, true};
}

}  // namespace tarnwick
