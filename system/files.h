// Questions about files and folders of which nobody knows whether they will answer: some process's working
// folder may lie on a file system whose far end is gone, and then a question, once asked, never comes back.
// So they are plain values, which another process can be handed. Bytes and names come back as they are, not
// repaired to UTF-8; only regular files are read; what cannot be read, or did not answer in time, is absent,
// false or empty. Used by one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

// The room on a volume, as the system counts it.
struct VolumeFacts {
  std::uint64_t available = 0;  // blocks that the user may still fill
  std::uint64_t blocks = 0;
  std::uint64_t blockBytes = 0;
  std::uint64_t readOnly = 0;  // 0 or 1
};

struct FileQuestion {
  enum class Kind : std::uint32_t {
    content,
    head,
    tail,
    exists,
    directory,
    regular,
    program,
    own,
    names,
    real,
    volume,
    socket,
    replace,
    remove,
    makeFolder
  };
  Kind kind = Kind::exists;
  std::string path;
  std::uint64_t bytes = 0;   // how much is wanted; only of content, head and tail
  std::string content = {};  // what the file shall hold; only of replace

  bool changes() const { return kind >= Kind::replace; }
};

// The bytes that were asked for; empty where the answer is just "yes".
using FileAnswer = std::optional<std::string>;

// Asks the system, however long that takes.
FileAnswer answerTo(const FileQuestion& question);

class Files {
 public:
  virtual ~Files() = default;

  virtual FileAnswer ask(const FileQuestion& question) = 0;

  // How many questions have had no answer so far. An absence is only to be remembered beyond the check when
  // none was added meanwhile.
  virtual std::size_t misses() const { return 0; }

  // May somebody else, a tool say, be sent to that path? Not where a question had no answer lately.
  virtual bool mayVisit(const std::string& /*path*/) { return true; }

  // Whoever was sent there has not come back in time.
  virtual void hasStalled(const std::string& /*path*/) {}

  // Is there time for a question? Where there is none, asking is in vain.
  virtual bool hasTime() { return true; }

  // No question will come for a while.
  virtual void rest() {}

  // As the functions of the same names in small_file.h.
  std::optional<std::string> readSmallFile(const std::string& path, std::size_t maxBytes);
  std::optional<std::string> readFileHead(const std::string& path, std::size_t bytes);
  std::optional<std::string> readFileTail(const std::string& path, std::size_t bytes);
  bool pathExists(const std::string& path);
  bool isDirectory(const std::string& path);
  bool isRegularFile(const std::string& path);
  bool isExecutableFile(const std::string& path);
  bool isOwn(const std::string& path);
  std::vector<std::string> folderEntries(const std::string& path);

  // A socket that this user may open.
  bool isOpenSocket(const std::string& path);

  // As the functions of replaced_file.h.
  bool replaceFile(const std::string& path, std::string content);
  bool removeFile(const std::string& path);
  bool makeFolder(const std::string& path);

  // The path without links and dots; absent when there is nothing.
  std::optional<std::string> realPath(const std::string& path);

  std::optional<VolumeFacts> volume(const std::string& path);
};

// Asks here and now: for tests, and for what is known to answer.
class DirectFiles final : public Files {
 public:
  FileAnswer ask(const FileQuestion& question) override { return answerTo(question); }
};

}  // namespace tarnwick
