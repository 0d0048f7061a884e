#include "system/posix/private_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "system/mounts.h"
#include "system/posix/local_way.h"

namespace tarnwick {
namespace {

constexpr mode_t allRights = S_IRWXU | S_IRWXG | S_IRWXO | S_ISUID | S_ISGID | S_ISVTX;
constexpr mode_t rightsOfOthers = S_IRWXG | S_IRWXO;

bool isOwn(const struct stat& facts) { return facts.st_uid == ::geteuid(); }

}  // namespace

std::optional<PrivateFolder> PrivateFolder::open(const std::string& path) {
  if (!path.starts_with('/') || !wayTo(path, distantPoints(mounts())).local) return std::nullopt;
  Descriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  struct stat facts {};
  if (!folder.isOpen() || ::fstat(folder.number(), &facts) != 0) return std::nullopt;
  if (!isOwn(facts) || (facts.st_mode & allRights) != S_IRWXU) return std::nullopt;
  return PrivateFolder(std::move(folder));
}

PrivateFolder::Lock PrivateFolder::lock(const std::string& name) const {
  Lock lock;
  struct stat facts {};
  // Asked before opening, because opening alone already wakes a pipe's other end; and again after it.
  if (::fstatat(folder_.number(), name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) == 0 &&
      !S_ISREG(facts.st_mode)) {
    return lock;
  }
  constexpr int flags = O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  Descriptor file(::openat(folder_.number(), name.c_str(), flags, S_IRUSR | S_IWUSR));
  if (!file.isOpen() || ::fstat(file.number(), &facts) != 0) return lock;
  if (!S_ISREG(facts.st_mode) || !isOwn(facts)) return lock;
  if ((facts.st_mode & rightsOfOthers) != 0 && ::fchmod(file.number(), S_IRUSR | S_IWUSR) != 0) return lock;
  if (::flock(file.number(), LOCK_EX | LOCK_NB) == 0) {
    lock.state = Lock::State::held;
    lock.file = std::move(file);
  } else if (errno == EWOULDBLOCK) {
    lock.state = Lock::State::elsewhere;
  }
  return lock;
}

bool PrivateFolder::hasSocket(const std::string& name) const {
  struct stat facts {};
  return ::fstatat(folder_.number(), name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) == 0 &&
         S_ISSOCK(facts.st_mode) && isOwn(facts) && (facts.st_mode & rightsOfOthers) == 0;
}

}  // namespace tarnwick
