// Cheap access to the files of a /proc tree, live or recorded: one open folder, paths relative to it, no
// streams. Reads bytes and understands nothing. Whatever cannot be read is absent or empty; the results
// belong to the caller. Used by one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "records/basics.h"
#include "system/posix/descriptor.h"

namespace tarnwick {

// The folder of a process. The kernel gives it to the effective user even where the files in it belong to
// root because the process is protected. The inode tells the process from any other one of the same pid.
struct ProcessFolder {
  std::uint32_t uid = 0;
  std::uint64_t inode = 0;
};

// One process whose folder is held open: its files are found without looking it up each time, and they are
// its own even when the pid goes to another process. Files of a process that ended read as absent.
class ProcessFiles {
 public:
  ProcessFiles(Pid pid, Descriptor folder, const ProcessFolder& facts)
      : pid_(pid), folder_(std::move(folder)), facts_(facts) {}

  Pid pid() const { return pid_; }
  std::uint32_t uid() const { return facts_.uid; }
  std::uint64_t inode() const { return facts_.inode; }

  // The part of a file that fits `buffer`, in one read: a second one could belong to a later state of the
  // process.
  std::optional<std::string_view> read(const char* file, std::span<char> buffer) const;

  // What a link points to, as the kernel words it, in `buffer` and cut to its size; empty when it cannot be
  // read.
  std::string_view link(const char* file, std::span<char> buffer) const;
  static constexpr std::size_t longestLink = 4'096;

  // What the open descriptors point to, as the kernel words it, one after another until `take` has enough and
  // says false: there may be millions.
  void eachDescriptor(const std::function<bool(std::string_view)>& take) const;

 private:
  Pid pid_;
  Descriptor folder_;
  ProcessFolder facts_;
};

class ProcReader {
 public:
  // A folder that cannot be opened reads as one without processes and files.
  explicit ProcReader(const std::string& root);

  // All processes, ascending. None when the list breaks off: half of it would pass for the whole.
  std::vector<Pid> pids() const;

  // May this program open the few files at once that reading takes? Where it may not, every process reads as
  // one without properties.
  bool hasRoom() const;

  // The pid that the kernel gave out last, to a process or a thread; absent when the kernel itself does not
  // say. While it stays the same, pids() gains nobody.
  std::optional<Pid> newest() const;

  // Absent when there is no such process.
  std::optional<ProcessFolder> folder(Pid pid) const;

  // Does the process's folder belong to `uid`?
  bool belongsTo(Pid pid, std::uint32_t uid) const;

  // Holds it; absent when there is no such process.
  std::optional<ProcessFiles> open(Pid pid) const;

  // The first `limit` processes, ascending, whose folder belongs to `uid`.
  std::vector<Pid> pidsOf(std::uint32_t uid, std::size_t limit) const;

  // As ProcessFiles::read, for one file alone.
  std::optional<std::string_view> read(Pid pid, const char* file, std::span<char> buffer) const;

  // A file of the machine, such as "meminfo", up to `longestFile` bytes; empty when it cannot be read.
  std::string machineFile(const char* file) const;
  static constexpr std::size_t longestFile = std::size_t{16} << 20U;

 private:
  int at() const { return root_.number(); }
  Descriptor root_;
};

}  // namespace tarnwick
