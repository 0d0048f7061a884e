#include "sampling/linux/xdg_workspace.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>
#include <string_view>
#include <utility>

#include "sampling/decode/app_unit.h"
#include "system/small_file.h"

namespace tarnwick {
namespace {

constexpr std::size_t pidListLimit = 1'048'576;  // bytes
constexpr int deepestGroup = 16;                 // slices in slices, groups in a unit

struct AppUnit {
  std::string path;  // folder in the cgroup tree
  std::string id;
  Pid pid = 0;
};

// The folders in a folder; links are not followed.
std::vector<std::string> foldersIn(const std::string& folder) {
  std::vector<std::string> paths;
  std::error_code error;
  for (std::filesystem::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
    std::error_code gone;
    if (at->symlink_status(gone).type() != std::filesystem::file_type::directory) continue;
    paths.push_back(at->path().string());
  }
  return paths;
}

std::optional<Pid> smaller(std::optional<Pid> a, std::optional<Pid> b) {
  if (!a || !b) return a ? a : b;
  return std::min(*a, *b);
}

// The smallest pid of a list with one in each line. 0 stands for a process of another pid namespace.
std::optional<Pid> smallestPid(std::string_view list) {
  std::optional<Pid> smallest;
  while (!list.empty()) {
    const auto end = std::min(list.find('\n'), list.size());
    Pid pid = 0;
    const auto parsed = std::from_chars(list.data(), list.data() + end, pid);
    const bool whole = parsed.ec == std::errc{} && parsed.ptr == list.data() + end;
    if (whole && pid > 0) smallest = smaller(smallest, pid);
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return smallest;
}

// The smallest pid of a unit. A unit that divides itself into groups has its processes in these.
std::optional<Pid> mainPid(const std::string& unit, int depth) {
  auto pid = smallestPid(readSmallFile(unit + "/cgroup.procs", pidListLimit).value_or(std::string()));
  if (depth == deepestGroup) return pid;
  for (const std::string& group : foldersIn(unit)) pid = smaller(pid, mainPid(group, depth + 1));
  return pid;
}

void collectUnits(const std::string& slice, int depth, std::vector<AppUnit>& units) {
  for (const std::string& path : foldersIn(slice)) {
    const std::string_view name = lastPathComponent(path);
    if (name.ends_with(".slice")) {
      if (depth < deepestGroup) collectUnits(path, depth + 1, units);
      continue;
    }
    const auto id = applicationID(name);
    const auto pid = id ? mainPid(path, depth + 1) : std::nullopt;
    if (pid) units.push_back({path, *id, *pid});
  }
}

// The slice for applications. Beside a version 1 tree, the session manager's groups are one level down.
std::string appSlice(const std::string& cgroupRoot, std::uint32_t uid) {
  const std::string user = std::to_string(uid);
  const std::string slice = "/user.slice/user-" + user + ".slice/user@" + user + ".service/app.slice";
  for (const char* mount : {"", "/unified", "/systemd"}) {
    std::string path = cgroupRoot;
    path.append(mount).append(slice);
    if (isDirectory(path)) return path;
  }
  return cgroupRoot + slice;
}

}  // namespace

XdgWorkspace::XdgWorkspace(DesktopEntries& entries, std::uint32_t uid, std::string cgroupRoot)
    : entries_(entries), uid_(uid), cgroupRoot_(std::move(cgroupRoot)) {}

std::vector<RunningApp> XdgWorkspace::runningApps() {
  std::vector<AppUnit> units;
  collectUnits(appSlice(cgroupRoot_, uid_), 0, units);
  std::sort(units.begin(), units.end(), [](const AppUnit& a, const AppUnit& b) { return a.path < b.path; });
  std::vector<RunningApp> apps;
  for (const AppUnit& unit : units) {
    const auto entry = entries_.find(unit.id);
    if (!entry) continue;
    const bool autostarted = unit.path.ends_with("@autostart.service");
    apps.push_back({.pid = unit.pid,
                    .name = entry->name,
                    .bundleID = entry->id,
                    .path = entry->file,
                    .background = autostarted || !entry->shown});
  }
  return apps;
}

}  // namespace tarnwick
