// Cheap access to the files of a /proc tree, live or recorded: one open folder, paths relative to it, no
// streams. Reads bytes and understands nothing. Whatever cannot be read is absent or empty; the results
// belong to the caller. Used by one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
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

class ProcReader {
 public:
  // A folder that cannot be opened reads as one without processes and files.
  explicit ProcReader(const std::string& root);

  // All processes, ascending.
  std::vector<Pid> pids() const;

  // The pid that the kernel gave out last, to a process or a thread; absent when the kernel itself does not
  // say. While it stays the same, pids() gains nobody.
  std::optional<Pid> newest() const;

  // Absent when there is no such process.
  std::optional<ProcessFolder> folder(Pid pid) const;

  // Does the process's folder belong to `uid`?
  bool belongsTo(Pid pid, std::uint32_t uid) const;

  // As folder(), and keeps that folder open until the next call: the files of the process are then found
  // without looking it up each time, and they are its own even when the pid goes to another one. Files of a
  // process that ended read as absent.
  std::optional<ProcessFolder> hold(Pid pid);

  // The first `limit` processes, ascending, whose folder belongs to `uid`.
  std::vector<Pid> pidsOf(std::uint32_t uid, std::size_t limit) const;

  // The part of a process's file that fits `buffer`, in one read: a second one could belong to a later
  // state of the process.
  std::optional<std::string_view> read(Pid pid, const char* file, std::span<char> buffer) const;

  // What a process's link points to, as the kernel words it, in `buffer` and cut to its size; empty when it
  // cannot be read.
  std::string_view link(Pid pid, const char* file, std::span<char> buffer) const;
  static constexpr std::size_t longestLink = 4'096;

  // What the process's open descriptors point to, as the kernel words it.
  std::vector<std::string> descriptors(Pid pid) const;

  // A file of the machine, such as "meminfo", up to `longestFile` bytes; empty when it cannot be read.
  std::string machineFile(const char* file) const;
  static constexpr std::size_t longestFile = std::size_t{16} << 20U;

 private:
  int at() const;
  OpenFolder root_;
  Pid heldPid_ = 0;  // 0 for nobody
  Descriptor held_;
};

}  // namespace tarnwick
