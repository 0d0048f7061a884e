#include "context/git_files.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <vector>

#include "records/snapshot.h"
#include "records/text.h"
#include "records/utf8.h"

namespace tarnwick {
namespace {

// The service whose pull requests gh reads.
constexpr std::string_view codeHost = "github.com";

constexpr std::size_t shortCommitCharacters = 7;

// The pieces between any of the separators; empty pieces are dropped.
std::vector<std::string_view> pieces(std::string_view text, std::string_view separators) {
  std::vector<std::string_view> found;
  std::size_t start = text.find_first_not_of(separators);
  while (start != std::string_view::npos) {
    const std::size_t end = std::min(text.find_first_of(separators, start), text.size());
    found.push_back(text.substr(start, end - start));
    start = text.find_first_not_of(separators, end);
  }
  return found;
}

// Dot segments are resolved in the text alone, as written, not through links.
std::string resolved(std::string_view path, const std::string& base) {
  if (path.starts_with('/')) return std::string(path);
  return (std::filesystem::path(base) / path).lexically_normal().string();
}

}  // namespace

std::optional<std::string> gitDirectoryFrom(std::string_view marker, const std::string& dir) {
  constexpr std::string_view prefix = "gitdir: ";
  marker = trimmed(marker);
  if (!marker.starts_with(prefix)) return std::nullopt;
  return resolved(marker.substr(prefix.size()), dir);
}

std::string branchFrom(std::string_view head) {
  constexpr std::string_view prefix = "ref: refs/heads/";
  const std::string text = repairUtf8(trimmed(head));
  if (text.starts_with(prefix)) return text.substr(prefix.size());
  return firstCharacters(text, shortCommitCharacters);
}

std::string commonDirectoryFrom(std::string_view commondir, const std::string& gitDirectory) {
  commondir = trimmed(commondir);
  return commondir.empty() ? gitDirectory : resolved(commondir, gitDirectory);
}

std::optional<std::string> originUrl(std::string_view config) {
  bool insideOrigin = false;
  for (const std::string_view piece : pieces(config, "\r\n")) {
    const std::string_view line = trimmed(piece, " \t");
    if (line.starts_with('[')) {
      insideOrigin = line == "[remote \"origin\"]";
    } else if (insideOrigin && line.starts_with("url")) {
      const std::size_t equals = line.find('=');
      if (equals == std::string_view::npos) return std::nullopt;
      return repairUtf8(trimmed(line.substr(equals + 1)));
    }
  }
  return std::nullopt;
}

RemoteParts remoteParts(std::string_view url) {
  constexpr std::string_view suffix = ".git";
  const std::vector<std::string_view> parts = pieces(url, "/:");
  RemoteParts remote;
  if (parts.empty()) return remote;
  std::string_view name = parts.back();
  if (name.ends_with(suffix)) name.remove_suffix(suffix.size());
  remote.repo = std::string(name);
  if (parts.size() >= 2 && !name.empty() && url.find(codeHost) != std::string_view::npos) {
    remote.slug = std::string(parts[parts.size() - 2]) + "/" + remote.repo;
  }
  return remote;
}

std::string folderName(const std::string& dir) {
  return std::string(lastPathComponent(std::string_view(dir).substr(0, dir.find_last_not_of('/') + 1)));
}

}  // namespace tarnwick
