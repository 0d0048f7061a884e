// What the system says about files, and the process that asks it on behalf of another one.
#include "system/posix/file_answers.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>

#include "system/files.h"
#include "system/posix/differences.h"
#include "system/posix/replaced_file.h"
#include "system/small_file.h"
#include "system/unix_socket.h"

namespace tarnwick {
namespace {

using Kind = FileQuestion::Kind;

FileAnswer yesIf(bool holds) { return holds ? FileAnswer(std::string()) : std::nullopt; }

FileAnswer namesIn(const std::string& folder) {
  std::string all;
  for (const std::string& name : folderEntries(folder)) {
    if (all.size() + name.size() >= longestFileAnswer) break;
    all.append(name).push_back('\0');
  }
  return all;
}

FileAnswer realPathOf(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
  return real ? FileAnswer(real.get()) : std::nullopt;
}

FileAnswer volumeOf(const std::string& path) {
  struct statvfs volume = {};
  if (::statvfs(path.c_str(), &volume) != 0) return std::nullopt;
  const VolumeFacts facts{.available = volume.f_bavail,
                          .blocks = volume.f_blocks,
                          .blockBytes = volume.f_frsize,
                          .readOnly = (volume.f_flag & ST_RDONLY) != 0 ? 1U : 0U};
  return std::string(reinterpret_cast<const char*>(&facts), sizeof facts);
}

// False when the other end is gone.
bool receiveWhole(int socket, void* bytes, std::size_t count) {
  auto* at = static_cast<char*>(bytes);
  while (count > 0) {
    const ssize_t got = ::read(socket, at, count);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return false;
    at += got;
    count -= static_cast<std::size_t>(got);
  }
  return true;
}

bool sendAll(int socket, const void* bytes, std::size_t count) {
  const auto* at = static_cast<const char*>(bytes);
  while (count > 0) {
    const ssize_t sent = sendQuietly(socket, at, count);
    if (sent < 0 && errno == EINTR) continue;
    if (sent <= 0) return false;
    at += sent;
    count -= static_cast<std::size_t>(sent);
  }
  return true;
}

bool receiveContent(int socket, FileQuestion& question) {
  if (question.bytes > longestFileAnswer) return false;
  question.content.resize(question.bytes);
  return receiveWhole(socket, question.content.data(), question.content.size());
}

// What has been begun is finished, also when whoever wanted it is told to end meanwhile: a file under a
// passing name would stay behind.
FileAnswer changeWhole(const FileQuestion& question) {
  endWithParent(false);
  FileAnswer answer = answerTo(question);
  endWithParent(true);
  return answer;
}

bool serveOne(int socket) {
  FileQuestionHead head;
  if (!receiveWhole(socket, &head, sizeof head) || head.pathBytes > longestFilePath) return false;
  std::string path(head.pathBytes, '\0');
  if (!receiveWhole(socket, path.data(), path.size())) return false;
  FileQuestion question{static_cast<Kind>(head.kind), std::move(path), head.bytes};
  if (question.changes() && !receiveContent(socket, question)) return false;
  const FileAnswer answer = question.changes() ? changeWhole(question) : answerTo(question);
  const FileAnswerHead reply{.found = answer ? 1U : 0U,
                             .bytes = static_cast<std::uint32_t>(answer ? answer->size() : 0)};
  return sendAll(socket, &reply, sizeof reply) &&
         (!answer || sendAll(socket, answer->data(), answer->size()));
}

}  // namespace

FileAnswer answerTo(const FileQuestion& question) {
  const std::string& path = question.path;
  if (path.find('\0') != std::string::npos) return std::nullopt;  // would name another file
  const auto bytes = static_cast<std::size_t>(std::min<std::uint64_t>(question.bytes, longestFileAnswer));
  switch (question.kind) {
    case Kind::content:
      return readSmallFile(path, bytes);
    case Kind::head:
      return readFileHead(path, bytes);
    case Kind::tail:
      return readFileTail(path, bytes);
    case Kind::exists:
      return yesIf(pathExists(path));
    case Kind::directory:
      return yesIf(isDirectory(path));
    case Kind::regular:
      return yesIf(isRegularFile(path));
    case Kind::program:
      return yesIf(isExecutableFile(path));
    case Kind::own:
      return yesIf(isOwn(path));
    case Kind::names:
      return namesIn(path);
    case Kind::real:
      return realPathOf(path);
    case Kind::volume:
      return volumeOf(path);
    case Kind::socket:
      return yesIf(UnixSocketTransport().reachable(path));
    case Kind::replace:
      return yesIf(replaceFile(path, question.content));
    case Kind::remove:
      return yesIf(removeFile(path));
    case Kind::makeFolder:
      return yesIf(makeFolder(path));
  }
  return std::nullopt;
}

bool isFileWorker(int argc, char** argv) {
  if (argc != 2 || std::strcmp(argv[1], fileWorkerWord) != 0) return false;
  struct stat facts {};
  return ::fstat(STDIN_FILENO, &facts) == 0 && S_ISSOCK(facts.st_mode);
}

// Nothing of its parent's may stay open in a process that may never end: a reader at the other end of a pipe
// would wait for it.
int serveFileQuestions() {
  endWithParent(true);
  closeAllFrom(STDERR_FILENO + 1);
  while (serveOne(STDIN_FILENO)) {
  }
  return 0;
}

}  // namespace tarnwick
