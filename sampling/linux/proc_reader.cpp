#include "sampling/linux/proc_reader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>

namespace tarnwick {
namespace {

// A recorded tree may hold anything, so opening must neither wait for a writer nor gain a terminal.
constexpr int openFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
constexpr std::size_t longestLink = 4096;

// "PID/file", or "PID" for an empty file, as a C string without an allocation.
class ProcessPath {
 public:
  ProcessPath(Pid pid, std::string_view file) {
    static_assert(mostDigits + 1 + longestFile < sizeof(text_));
    char* end = std::to_chars(text_.data(), text_.data() + mostDigits, pid).ptr;
    if (!file.empty()) {
      *end++ = '/';
      end = std::copy_n(file.begin(), std::min(file.size(), longestFile), end);
    }
    *end = '\0';
  }
  const char* text() const { return text_.data(); }

 private:
  static constexpr std::size_t mostDigits = 11;   // of a 32-bit number, its sign included
  static constexpr std::size_t longestFile = 32;  // "cmdline", "status", ...
  std::array<char, 64> text_{};
};

std::optional<Pid> pidOfName(std::string_view name) {
  Pid pid = 0;
  const char* end = name.data() + name.size();
  const auto result = std::from_chars(name.data(), end, pid);
  if (result.ec != std::errc{} || result.ptr != end || pid <= 0) return std::nullopt;
  return pid;
}

std::string linkAt(int folder, const char* name) {
  std::array<char, longestLink> target{};
  const ssize_t length = ::readlinkat(folder, name, target.data(), target.size());
  return length > 0 ? std::string(target.data(), static_cast<std::size_t>(length)) : std::string();
}

Folder folderAt(int parent, const char* name) {
  const int number = ::openat(parent, name, openFlags | O_DIRECTORY);
  if (number < 0) return nullptr;
  DIR* folder = ::fdopendir(number);
  if (folder == nullptr) ::close(number);
  return Folder(folder);
}

std::optional<struct stat> folderInfo(int root, Pid pid) {
  struct stat info {};
  if (::fstatat(root, ProcessPath(pid, "").text(), &info, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
  return info;
}

}  // namespace

Descriptor::~Descriptor() {
  if (number_ >= 0) ::close(number_);
}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  std::swap(number_, other.number_);
  return *this;
}

ssize_t Descriptor::read(std::span<char> buffer) const {
  ssize_t count = -1;
  do {
    count = ::read(number_, buffer.data(), buffer.size());
  } while (count < 0 && errno == EINTR);
  return count;
}

void FolderCloser::operator()(DIR* folder) const { ::closedir(folder); }

ProcReader::ProcReader(const std::string& root) : root_(folderAt(AT_FDCWD, root.c_str())) {}

int ProcReader::at() const { return root_ ? ::dirfd(root_.get()) : -1; }

std::vector<Pid> ProcReader::pids() const {
  if (!root_) return {};
  std::vector<Pid> all;
  ::rewinddir(root_.get());
  while (const dirent* entry = ::readdir(root_.get())) {
    if (const auto pid = pidOfName(entry->d_name)) all.push_back(*pid);
  }
  std::sort(all.begin(), all.end());
  return all;
}

std::vector<OwnedProcess> ProcReader::processesOf(std::uint32_t uid, std::size_t limit) const {
  std::vector<OwnedProcess> mine;
  for (const Pid pid : pids()) {
    if (mine.size() == limit) break;
    const auto info = folderInfo(at(), pid);
    if (info && info->st_uid == uid) mine.push_back({pid, info->st_ino});
  }
  return mine;
}

void ProcReader::hold(Pid pid) {
  held_ = Descriptor(::openat(at(), ProcessPath(pid, "").text(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  heldPid_ = held_.open() ? pid : 0;
}

bool ProcReader::belongsTo(Pid pid, std::uint32_t uid) const {
  const auto info = folderInfo(at(), pid);
  return info && info->st_uid == uid;
}

std::optional<std::uint64_t> ProcReader::inode(Pid pid) const {
  const auto info = folderInfo(at(), pid);
  return info ? std::optional<std::uint64_t>(info->st_ino) : std::nullopt;
}

std::optional<std::string_view> ProcReader::read(Pid pid, const char* file, std::span<char> buffer) const {
  const Descriptor descriptor(pid == heldPid_ ? ::openat(held_.number(), file, openFlags)
                                              : ::openat(at(), ProcessPath(pid, file).text(), openFlags));
  if (!descriptor.open()) return std::nullopt;
  const ssize_t count = descriptor.read(buffer);
  if (count < 0) return std::nullopt;
  return std::string_view(buffer.data(), static_cast<std::size_t>(count));
}

std::string ProcReader::link(Pid pid, const char* file) const {
  return pid == heldPid_ ? linkAt(held_.number(), file) : linkAt(at(), ProcessPath(pid, file).text());
}

std::vector<std::string> ProcReader::descriptors(Pid pid) const {
  const Folder folder = folderAt(at(), ProcessPath(pid, "fd").text());
  if (!folder) return {};
  std::vector<std::string> targets;
  while (const dirent* entry = ::readdir(folder.get())) {
    auto target = linkAt(::dirfd(folder.get()), entry->d_name);
    if (!target.empty()) targets.push_back(std::move(target));
  }
  return targets;
}

std::string ProcReader::machineFile(const char* file) const {
  constexpr std::size_t step = 65'536;
  const Descriptor descriptor(::openat(at(), file, openFlags));
  if (!descriptor.open()) return {};
  std::string text;
  while (text.size() < longestFile) {
    const std::size_t had = text.size();
    text.resize(had + step);
    const ssize_t count = descriptor.read(std::span(text).subspan(had));
    text.resize(had + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    if (count <= 0) break;
  }
  return text;
}

}  // namespace tarnwick
