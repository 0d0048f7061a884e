#include "system/mounts.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "records/text.h"

namespace tarnwick {
namespace {

// Kernels' own file systems on disks and in memory. All others (networks, user space, automatic mounts) need
// somebody else to answer.
constexpr std::array<std::string_view, 30> localKinds{
    "ext2",  "ext3",  "ext4",     "xfs",   "btrfs",   "f2fs",    "bcachefs", "zfs",     "jfs",    "reiserfs",
    "vfat",  "exfat", "ntfs3",    "msdos", "hfs",     "hfsplus", "apfs",     "iso9660", "udf",    "squashfs",
    "erofs", "tmpfs", "devtmpfs", "ramfs", "overlay", "proc",    "sysfs",    "cgroup2", "cgroup", "rootfs"};

bool holds(std::string_view point, std::string_view path) {
  if (point == "/") return path.starts_with('/');
  return path.starts_with(point) && (path.size() == point.size() || path[point.size()] == '/');
}

// The kernel writes blanks, tabs, line feeds and backslashes as three octal digits.
std::string unescaped(std::string_view text) {
  if (text.find('\\') == std::string_view::npos) return std::string(text);
  const auto isOctal = [](char c) { return c >= '0' && c <= '7'; };
  std::string plain;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '\\' && at + 3 < text.size() && isOctal(text[at + 1]) && isOctal(text[at + 2]) &&
        isOctal(text[at + 3])) {
      plain += static_cast<char>((text[at + 1] - '0') * 64 + (text[at + 2] - '0') * 8 + (text[at + 3] - '0'));
      at += 3;
    } else {
      plain += text[at];
    }
  }
  return plain;
}

bool isLocalKind(std::string_view kind) { return std::ranges::find(localKinds, kind) != localKinds.end(); }

struct MountLine {
  std::string_view point;  // as the kernel writes it
  std::string_view kind;   // empty when the line is malformed
};

// "36 35 98:0 /root /mount/point options optional fields - kind source options"
MountLine takeMount(std::string_view& mountinfo) {
  constexpr int wordsBefore = 4;
  std::string_view line = takeLine(mountinfo);
  for (int word = 0; word < wordsBefore; ++word) takeWord(line);
  const std::string_view point = takeWord(line);
  if (!point.starts_with('/')) return {};
  std::string_view word = takeWord(line);
  while (!word.empty() && word != "-") word = takeWord(line);
  return {point, takeWord(line)};
}

}  // namespace

std::vector<Mount> mountsIn(std::string_view mountinfo) {
  std::vector<Mount> all;
  while (!mountinfo.empty()) {
    if (const MountLine line = takeMount(mountinfo); !line.kind.empty())
      all.push_back({unescaped(line.point), std::string(line.kind)});
  }
  return all;
}

DistantPoints distantIn(std::string_view mountinfo) {
  DistantPoints points;
  while (!mountinfo.empty()) {
    const MountLine line = takeMount(mountinfo);
    if (line.kind.empty()) continue;
    if (!points) points.emplace();
    if (!isLocalKind(line.kind)) points->push_back(unescaped(line.point));
  }
  return points;
}

const Mount* mountOf(std::string_view path, const std::vector<Mount>& all) {
  const Mount* best = nullptr;
  for (const Mount& mount : all) {
    if (holds(mount.point, path) && (best == nullptr || mount.point.size() >= best->point.size()))
      best = &mount;
  }
  return best;
}

std::vector<std::string> distantPoints(const std::vector<Mount>& all) {
  std::vector<std::string> points;
  for (const Mount& mount : all) {
    if (!isLocalKind(mount.kind)) points.push_back(mount.point);
  }
  return points;
}

bool isDistant(std::string_view path, const std::vector<std::string>& points) {
  return std::ranges::any_of(points, [path](const std::string& point) { return holds(point, path); });
}

bool isLocal(std::string_view path, const std::vector<Mount>& all) {
  return mountOf(path, all) != nullptr && !isDistant(path, distantPoints(all));
}

}  // namespace tarnwick
