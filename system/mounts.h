// Which file systems are mounted where, as the kernel lists it: asking never touches them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct Mount {
  std::string point;
  std::string kind;  // the file system's name, such as "ext4"
};

// Those of this process, in the kernel's order; empty when it does not say.
std::vector<Mount> mounts();

// The points of those that need somebody else to answer; absent when the kernel does not say.
using DistantPoints = std::optional<std::vector<std::string>>;
DistantPoints distantMounts();

// The lines of /proc/self/mountinfo; malformed ones are left out.
std::vector<Mount> mountsIn(std::string_view mountinfo);

// The same as distantPoints() of them; most are local, and nothing is kept of those.
DistantPoints distantIn(std::string_view mountinfo);

// The mount that holds `path`, an absolute path without links, as far as its text tells: that with the
// longest fitting point, of several the last. Null when none does.
const Mount* mountOf(std::string_view path, const std::vector<Mount>& all);

// The points of those that need somebody else to answer.
std::vector<std::string> distantPoints(const std::vector<Mount>& all);

// Does one of these points hold the path?
bool isDistant(std::string_view path, const std::vector<std::string>& points);

// Is everything on the way to `path` a file system of this machine, which needs nobody else to answer?
bool isLocal(std::string_view path, const std::vector<Mount>& all);

}  // namespace tarnwick
