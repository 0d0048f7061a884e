#include "context/git_files.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <utility>
#include <vector>

#include "records/limits.h"
#include "records/snapshot.h"
#include "records/text.h"
#include "records/utf8.h"

namespace tarnwick {
namespace {

// The service whose pull requests gh reads.
constexpr std::string_view codeHost = "github.com";

constexpr std::size_t shortCommitCharacters = 7;

// What the code host's names are made of.
constexpr std::size_t longestOwner = 39;
constexpr std::size_t longestRepository = 100;
constexpr std::size_t mostNumberDigits = 18;

bool isNumeral(char c) { return c >= '0' && c <= '9'; }

bool isLetterOrDigit(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || isNumeral(c); }

bool isMadeOf(std::string_view text, std::string_view signs, std::size_t most) {
  return !text.empty() && text.size() <= most && std::all_of(text.begin(), text.end(), [&](char c) {
    return isLetterOrDigit(c) || signs.find(c) != std::string_view::npos;
  });
}

// The host in an address of the form scheme://user@host:port/path or user@host:path; empty for a path.
std::string_view hostOf(std::string_view url) {
  constexpr std::string_view afterScheme = "://";
  const std::size_t scheme = url.find(afterScheme);
  if (scheme != std::string_view::npos) {
    url.remove_prefix(scheme + afterScheme.size());
    url = url.substr(0, url.find('/'));
  } else {
    const std::size_t end = url.find_first_of(":/");
    if (end == std::string_view::npos || url[end] == '/') return {};
    url = url.substr(0, end);
  }
  return url.substr(url.find('@') + 1);
}

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
  if (text.starts_with(prefix)) return firstCharacters(text.substr(prefix.size()), longestName);
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
  // A name in the user's ssh configuration often is the host's with something behind it.
  if (parts.size() >= 2 && hostOf(url).find(codeHost) != std::string_view::npos) {
    std::string slug = std::string(parts[parts.size() - 2]) + "/" + remote.repo;
    if (isSlug(slug)) remote.slug = std::move(slug);
  }
  return remote;
}

bool isSlug(std::string_view text) {
  const std::size_t slash = std::min(text.find('/'), text.size());
  const std::string_view owner = text.substr(0, slash);
  const std::string_view name = text.substr(std::min(slash + 1, text.size()));
  return isMadeOf(owner, "-_", longestOwner) && isLetterOrDigit(owner.front()) &&
         isMadeOf(name, "-_.", longestRepository) && name != "." && name != "..";
}

bool isPullRequestNumber(std::string_view text) {
  return !text.empty() && text.size() <= mostNumberDigits && text.front() != '0' &&
         std::all_of(text.begin(), text.end(), isNumeral);
}

bool isBranchName(std::string_view text) {
  if (text.empty() || text.size() > longestName || text == "@") return false;
  // A sharp before a number would name a request, not a branch.
  if (text.front() == '-' || text.front() == '/' || text.front() == '#' || text.back() == '/') return false;
  const auto isRefused = [](char c) {
    return static_cast<unsigned char>(c) <= ' ' || c == '\x7f' ||
           std::string_view("~^:?*[\\").find(c) != std::string_view::npos;
  };
  if (std::any_of(text.begin(), text.end(), isRefused)) return false;
  for (const std::string_view never : {"..", "//", "@{", "/.", "./", ".lock/"}) {
    if (text.find(never) != std::string_view::npos) return false;
  }
  return text.front() != '.' && !text.ends_with('.') && !text.ends_with(".lock");
}

std::string folderName(const std::string& dir) {
  return std::string(lastPathComponent(std::string_view(dir).substr(0, dir.find_last_not_of('/') + 1)));
}

}  // namespace tarnwick
