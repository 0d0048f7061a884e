#include "sampling/linux/proc_reader.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>

#include "records/text.h"
#include "sampling/decode/proc_stat.h"

namespace tarnwick {
namespace {

// A recorded tree may hold anything, so opening must neither wait for a writer nor gain a terminal.
constexpr int openFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

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
  const auto pid = wholeNumber<Pid>(name);
  return pid && *pid > 0 ? pid : std::nullopt;
}

std::string_view linkAt(int folder, const char* name, std::span<char> buffer) {
  const ssize_t length = ::readlinkat(folder, name, buffer.data(), buffer.size());
  return length > 0 ? std::string_view(buffer.data(), static_cast<std::size_t>(length)) : std::string_view();
}

OpenFolder folderAt(int parent, const char* name) {
  const int number = ::openat(parent, name, openFlags | O_DIRECTORY);
  if (number < 0) return nullptr;
  DIR* folder = ::fdopendir(number);
  if (folder == nullptr) ::close(number);
  return OpenFolder(folder);
}

std::optional<std::string_view> contentAt(int folder, const char* name, std::span<char> buffer) {
  const Descriptor descriptor(::openat(folder, name, openFlags));
  if (!descriptor.isOpen()) return std::nullopt;
  const ssize_t count = descriptor.read(buffer);
  if (count < 0) return std::nullopt;
  return std::string_view(buffer.data(), static_cast<std::size_t>(count));
}

}  // namespace

std::optional<std::string_view> ProcessFiles::read(const char* file, std::span<char> buffer) const {
  return contentAt(folder_.number(), file, buffer);
}

std::string_view ProcessFiles::link(const char* file, std::span<char> buffer) const {
  return linkAt(folder_.number(), file, buffer);
}

void ProcessFiles::eachDescriptor(const std::function<bool(std::string_view)>& take) const {
  const OpenFolder folder = folderAt(folder_.number(), "fd");
  if (!folder) return;
  std::array<char, longestLink> buffer{};
  while (const dirent* entry = ::readdir(folder.get())) {
    const auto target = linkAt(::dirfd(folder.get()), entry->d_name, buffer);
    if (!target.empty() && !take(target)) return;
  }
}

ProcReader::ProcReader(const std::string& root)
    : root_(::open(root.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)) {}

std::vector<Pid> ProcReader::pids() const {
  const OpenFolder folder = folderAt(at(), ".");
  if (!folder) return {};
  std::vector<Pid> all;
  errno = 0;
  while (const dirent* entry = ::readdir(folder.get())) {
    if (const auto pid = pidOfName(entry->d_name)) all.push_back(*pid);
  }
  if (errno != 0) return {};
  if (!std::is_sorted(all.begin(), all.end())) std::sort(all.begin(), all.end());
  return all;
}

bool ProcReader::hasRoom() const {
  constexpr rlim_t atOnce = 8;
  const Descriptor lowestFree(::fcntl(at(), F_DUPFD_CLOEXEC, 0));
  rlimit limit{};
  return lowestFree.isOpen() && ::getrlimit(RLIMIT_NOFILE, &limit) == 0 &&
         static_cast<rlim_t>(lowestFree.number()) + atOnce <= limit.rlim_cur;
}

std::optional<Pid> ProcReader::newest() const {
  const Descriptor descriptor(::openat(at(), "loadavg", openFlags));
  // A container's own file laid over the kernel's may be seconds old.
  struct statfs info {};
  if (!descriptor.isOpen() || ::fstatfs(descriptor.number(), &info) != 0 || info.f_type != PROC_SUPER_MAGIC) {
    return std::nullopt;
  }
  std::array<char, 128> buffer{};
  const ssize_t count = descriptor.read(buffer);
  return count > 0 ? newestPid({buffer.data(), static_cast<std::size_t>(count)}) : std::nullopt;
}

std::optional<ProcessFolder> ProcReader::folder(Pid pid) const {
  struct stat info {};
  if (::fstatat(at(), ProcessPath(pid, "").text(), &info, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
  return ProcessFolder{info.st_uid, info.st_ino};
}

bool ProcReader::belongsTo(Pid pid, std::uint32_t uid) const {
  const auto its = folder(pid);
  return its && its->uid == uid;
}

std::optional<ProcessFiles> ProcReader::open(Pid pid) const {
  Descriptor folder(::openat(at(), ProcessPath(pid, "").text(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  struct stat info {};
  if (!folder.isOpen() || ::fstat(folder.number(), &info) != 0) return std::nullopt;
  return ProcessFiles(pid, std::move(folder), {info.st_uid, info.st_ino});
}

std::vector<Pid> ProcReader::pidsOf(std::uint32_t uid, std::size_t limit) const {
  std::vector<Pid> mine;
  for (const Pid pid : pids()) {
    if (mine.size() == limit) break;
    if (belongsTo(pid, uid)) mine.push_back(pid);
  }
  return mine;
}

std::optional<std::string_view> ProcReader::read(Pid pid, const char* file, std::span<char> buffer) const {
  return contentAt(at(), ProcessPath(pid, file).text(), buffer);
}

std::string ProcReader::machineFile(const char* file) const {
  constexpr std::size_t step = 8'192;  // most files are shorter
  const Descriptor descriptor(::openat(at(), file, openFlags));
  if (!descriptor.isOpen()) return {};
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
