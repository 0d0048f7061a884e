#include "context/live_surroundings.h"

#include <cstddef>
#include <string_view>

#include "records/limits.h"
#include "records/text.h"
#include "records/utf8.h"
#include "system/port.h"
#include "system/small_file.h"

namespace tarnwick {
namespace {

// Is it the list of one of the simulators' devices? Another process's arguments name it.
bool isDeviceList(std::string_view path, std::string_view home) {
  constexpr std::string_view folder = "/Library/Developer/CoreSimulator/Devices/";
  constexpr std::string_view file = "/device.plist";
  if (!path.starts_with(home) || !path.substr(home.size()).starts_with(folder)) return false;
  path.remove_prefix(home.size() + folder.size());
  return path.ends_with(file) && isPlainFileName(path.substr(0, path.size() - file.size()));
}

}  // namespace

std::optional<Git> LiveSurroundings::git(const std::string& dir) { return gitReader_.git(dir); }

std::optional<ClaudeWork> LiveSurroundings::claudeSession(Pid pid) {
  return claudeReader_.claudeSession(pid);
}

std::optional<ClaudeWork> LiveSurroundings::claudeJob(const std::string& dir) {
  return claudeReader_.claudeJob(dir);
}

std::optional<std::string> LiveSurroundings::prTitle(const std::optional<std::string>& repo,
                                                     const std::optional<std::string>& pr) {
  return gitReader_.prTitle(repo, pr);
}

bool LiveSurroundings::exists(const std::string& path) { return pathExists(path); }

std::optional<std::string> LiveSurroundings::fileHead(const std::string& path) {
  const auto bytes = readFileHead(path, fileHeadBytes);
  if (!bytes) return std::nullopt;
  return repairUtf8(*bytes);
}

std::optional<std::string> LiveSurroundings::deviceName(const std::string& plistPath) {
  if (!isDeviceList(plistPath, self_.home) || !isOwn(plistPath)) return std::nullopt;
  const auto list = readSmallFile(plistPath, largestPropertyList);
  auto name = list ? propertyListText(*list, "name") : std::nullopt;
  if (name) name = repairUtf8(*name, longestDeviceName);
  return name;
}

bool LiveSurroundings::hasSimctl() { return places_.simctlBin().has_value(); }

std::string LiveSurroundings::mediumDate(Timestamp moment) { return localMediumDate(moment); }

}  // namespace tarnwick
