#include "sampling/linux/xdg_workspace.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string_view>
#include <utility>

#include "records/text.h"
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
    const auto pid = wholeNumber<Pid>(takeLine(list));
    if (pid && *pid > 0) smallest = smaller(smallest, pid);
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

}  // namespace

XdgWorkspace::XdgWorkspace(DesktopEntries& entries, std::uint32_t uid, std::string cgroupRoot)
    : entries_(entries), uid_(uid), cgroupRoot_(std::move(cgroupRoot)) {}

std::vector<RunningApp> XdgWorkspace::runningApps() {
  std::vector<AppUnit> units;
  if (const auto slice = appSlice(cgroupRoot_, uid_)) collectUnits(*slice, 0, units);
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
