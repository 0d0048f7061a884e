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
std::string_view takePart(std::string_view& path) {
  const std::size_t start = std::min(path.find_first_not_of('/'), path.size());
  const std::size_t end = std::min(path.find('/', start), path.size());
  const std::string_view part = path.substr(start, end - start);
  path.remove_prefix(end);
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

Way wayFrom(const Way& folder, std::string_view rest, const std::vector<std::string>& distant) {
  constexpr int mostLinks = 40;
  std::string done = folder.path == "/" ? std::string() : folder.path;  // has no links
  std::string behindLink;                                               // what `rest` is part of after one
  for (int links = 0; !rest.empty();) {
    const std::string_view part = takePart(rest);
    if (part.empty() || part == ".") continue;
    if (part == "..") {
      done.resize(std::min(done.rfind('/'), done.size()));
      continue;
    }
    const std::size_t before = done.size();
    done.append("/").append(part);
    if (isDistant(done, distant)) return {done.append(rest), false};
    auto target = linkTarget(done);
    if (!target) continue;
    if (++links > mostLinks) return {std::move(done), false};
    done.resize(target->starts_with('/') ? 0 : before);
    behindLink = std::move(target->append(rest));
    rest = behindLink;
  }
  return {done.empty() ? "/" : std::move(done), true};
}

}  // namespace tarnwick
