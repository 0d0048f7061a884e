#include "system/posix/replaced_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "system/posix/descriptor.h"

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

constexpr mode_t usualMode = 0666;  // the user's mask takes from it
constexpr mode_t permissions = 07777;

// What the links, if any, lead to; need not exist.
std::string behindLinks(fs::path path) {
  constexpr int mostLinks = 40;
  std::error_code failure;
  for (int links = 0; links < mostLinks && fs::is_symlink(path, failure); ++links)
    path = path.parent_path() / fs::read_symlink(path, failure);
  return path.string();
}

// A disk that is full may say so only when the file is closed.
bool writeAndClose(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(file, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return ::close(file) == 0 && bytes.empty();
}

}  // namespace

bool replaceFile(const std::string& path, std::string_view bytes) {
  const std::string target = behindLinks(path);
  struct stat old {};
  const bool isThere = ::stat(target.c_str(), &old) == 0;
  if (isThere && (!S_ISREG(old.st_mode) || ::access(target.c_str(), W_OK) != 0)) return false;
  const std::string fresh = target + "." + std::to_string(::getpid());
  const int file = ::open(fresh.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, usualMode);
  if (file < 0) return isThere && writeInto(target, bytes);
  if (isThere) ::fchmod(file, old.st_mode & permissions);
  if (writeAndClose(file, bytes) && std::rename(fresh.c_str(), target.c_str()) == 0) return true;
  ::unlink(fresh.c_str());
  return false;
}

bool writeInto(const std::string& path, std::string_view bytes) {
  const int file = ::open(path.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC | O_NOCTTY);
  return file >= 0 && writeAndClose(file, bytes);
}

bool removeFile(const std::string& path) { return ::unlink(path.c_str()) == 0; }

bool makeFolder(const std::string& path) {
  std::error_code failure;
  fs::create_directories(path, failure);
  return fs::is_directory(path, failure);
}

}  // namespace tarnwick
