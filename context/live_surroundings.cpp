#include "context/live_surroundings.h"

#include <cstddef>

#include "records/utf8.h"
#include "system/port.h"

namespace tarnwick {
namespace {

constexpr std::size_t propertyListBytes = 1U << 20U;

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
  const auto list = files_.readSmallFile(plistPath, propertyListBytes);
  if (!list) return std::nullopt;
  return propertyListText(*list, "name");
}

bool LiveSurroundings::hasSimctl() { return places_.simctlBin().has_value(); }

std::string LiveSurroundings::mediumDate(Timestamp moment) { return localMediumDate(moment); }

}  // namespace tarnwick
