#include "system/small_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <string_view>

#include "records/limits.h"
#include "system/posix/descriptor.h"

namespace tarnwick {
namespace {

// What the system says about the path; absent when there is nothing. A path with a NUL inside would reach the
// system cut short and name another file.
std::optional<struct stat> factsOf(const std::string& path) {
  struct stat facts {};
  if (path.find('\0') != std::string::npos || ::stat(path.c_str(), &facts) != 0) return std::nullopt;
  return facts;
}

// The kind of what stands at the path; 0 when there is nothing.
mode_t kindOf(const std::string& path) {
  const auto facts = factsOf(path);
  return facts ? facts->st_mode & static_cast<mode_t>(S_IFMT) : 0;
}

// A regular file that is open for reading.
class RegularFile {
 public:
  // The kind is asked before opening, because opening alone already wakes a pipe's writer, and once more
  // after it, because the file may have been exchanged in between.
  explicit RegularFile(const std::string& path) {
    if (!isRegularFile(path)) return;
    descriptor_ = Descriptor(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat facts {};
    if (!descriptor_.isOpen() || ::fstat(descriptor_.number(), &facts) != 0 || !S_ISREG(facts.st_mode))
      return;
    size_ = static_cast<std::uint64_t>(std::max<off_t>(facts.st_size, 0));
    readable_ = true;
  }

  bool readable() const { return readable_; }
  std::uint64_t size() const { return size_; }

  bool skip(std::uint64_t bytes) {
    return ::lseek(descriptor_.number(), static_cast<off_t>(bytes), SEEK_SET) >= 0;
  }

  // Reads on to the end, but not more than `limit` bytes; absent when the system refuses.
  std::optional<std::string> read(std::size_t limit) {
    std::string text;
    constexpr std::size_t blockBytes = 16'384;
    const auto block = std::make_unique_for_overwrite<char[]>(blockBytes);  // most files fill a part of it
    while (text.size() < limit) {
      const auto room = std::span(block.get(), std::min(blockBytes, limit - text.size()));
      const ssize_t got = descriptor_.read(room);
      if (got < 0) return std::nullopt;
      if (got == 0) break;
      text.append(block.get(), static_cast<std::size_t>(got));
    }
    return text;
  }

 private:
  Descriptor descriptor_;
  bool readable_ = false;
  std::uint64_t size_ = 0;
};

}  // namespace

std::optional<std::string> readSmallFile(const std::string& path, std::size_t maxBytes) {
  RegularFile file(path);
  if (!file.readable() || file.size() > maxBytes) return std::nullopt;
  // The size is a promise that a growing file breaks: one byte more than allowed is asked for.
  const std::size_t room = maxBytes == std::numeric_limits<std::size_t>::max() ? maxBytes : maxBytes + 1;
  std::optional<std::string> text = file.read(room);
  if (text && text->size() > maxBytes) return std::nullopt;
  return text;
}

std::optional<std::string> readFileHead(const std::string& path, std::size_t bytes) {
  RegularFile file(path);
  if (!file.readable()) return std::nullopt;
  return file.read(bytes);
}

std::optional<std::string> readFileTail(const std::string& path, std::size_t bytes) {
  RegularFile file(path);
  if (!file.readable()) return std::nullopt;
  if (file.size() > bytes && !file.skip(file.size() - bytes)) return std::nullopt;
  return file.read(bytes);
}

bool pathExists(const std::string& path) { return kindOf(path) != 0; }

bool isDirectory(const std::string& path) { return S_ISDIR(kindOf(path)); }

bool isRegularFile(const std::string& path) { return S_ISREG(kindOf(path)); }

bool isOwn(const std::string& path) {
  const auto facts = factsOf(path);
  return facts && facts->st_uid == ::geteuid();
}

bool isExecutableFile(const std::string& path) {
  return isRegularFile(path) && ::access(path.c_str(), X_OK) == 0;
}

std::vector<std::string> folderEntries(const std::string& path) {
  std::vector<std::string> names;
  if (!isDirectory(path)) return names;
  const OpenFolder folder(::opendir(path.c_str()));
  if (folder == nullptr) return names;
  while (const dirent* entry = ::readdir(folder.get())) {
    const std::string_view name = static_cast<const char*>(entry->d_name);
    if (name == "." || name == "..") continue;
    if (names.size() == mostFolderEntries) break;
    names.emplace_back(name);
  }
  return names;
}

}  // namespace tarnwick
