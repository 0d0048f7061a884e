#include "context/live_surroundings.h"

#include <cstddef>
#include <string_view>

#include "records/limits.h"
#include "records/text.h"
#include "records/utf8.h"
#include "system/port.h"

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

// So many bytes of paths are remembered in one check; folders may be thousands deep.
constexpr std::size_t mostExistsBytes = std::size_t{4} << 20U;

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

void LiveSurroundings::beginCheck() {
  exists_.clear();
  existsBytes_ = 0;
  gitReader_.beginCheck();
  claudeReader_.beginCheck();
}

bool LiveSurroundings::exists(const std::string& path) {
  const auto known = exists_.find(path);
  if (known != exists_.end()) return known->second;
  if (!files_.hasTime()) return false;
  const bool answer = files_.pathExists(path);
  if (existsBytes_ < mostExistsBytes) {
    existsBytes_ += path.size();
    exists_.emplace(path, answer);
  }
  return answer;
}

std::optional<std::string> LiveSurroundings::fileHead(const std::string& path) {
  const auto bytes = files_.readFileHead(path, fileHeadBytes);
  if (!bytes) return std::nullopt;
  return repairUtf8(*bytes);
}

std::optional<std::string> LiveSurroundings::deviceName(const std::string& plistPath) {
  if (!isDeviceList(plistPath, self_.home) || !files_.isOwn(plistPath)) return std::nullopt;
  const auto list = files_.readSmallFile(plistPath, largestPropertyList);
  auto name = list ? propertyListText(*list, "name") : std::nullopt;
  if (name) name = repairUtf8(*name, longestDeviceName);
  return name;
}

bool LiveSurroundings::hasSimctl() { return places_.simctlBin().has_value(); }

std::string LiveSurroundings::mediumDate(Timestamp moment) { return localMediumDate(moment); }

}  // namespace tarnwick
