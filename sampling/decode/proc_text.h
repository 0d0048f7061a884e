// The text files of /proc as records. Takes the bytes of one file and never reads; everything in them may
// be hostile, because a process chooses its own name and arguments. Absent or left out is whatever does not
// parse whole or overflows. Texts in the results are valid UTF-8.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "records/basics.h"

namespace tarnwick {

// The fields of PID/stat that matter here.
struct ProcStat {
  std::string name;               // at most 15 characters, kernel threads more; any bytes but zero
  char state = '?';               // the kernel's letter: R, S, D, T, Z and others
  Pid ppid = 0;                   // 0 for the first process and the first kernel thread
  std::int32_t terminal = 0;      // device number of the controlling terminal; 0 without one
  std::uint32_t flags = 0;        // the kernel's PF_ bits
  std::uint64_t userTicks = 0;    // clock ticks, all threads
  std::uint64_t systemTicks = 0;  // clock ticks, all threads
  std::uint64_t startTicks = 0;   // clock ticks from the machine's start to the process's start
  std::int64_t threads = 1;       // a process may go on after its first thread, whose state this is, ended

  bool kernelThread() const { return (flags & 0x0020'0000U) != 0; }  // PF_KTHREAD
  // Ended, waits for its parent.
  bool zombie() const { return (state == 'Z' || state == 'X') && threads <= 1; }
};
std::optional<ProcStat> procStat(std::string_view bytes);

// What turns clock ticks since the machine's start into times of day.
struct ProcClock {
  std::int64_t bootTime = 0;           // seconds since 1970
  std::uint64_t ticksPerSecond = 100;  // at least 1
};

// When the process started, seconds since 1970, rounded down; absent on overflow. A remedy compares this
// with what the table said: both must come from the same clock, read once.
std::optional<std::int64_t> startSeconds(const ProcStat& stat, const ProcClock& clock);

// The pages of PID/statm that matter here.
struct ProcPages {
  std::uint64_t resident = 0;
  std::uint64_t shared = 0;  // part of `resident` that is backed by files or shared memory
};
std::optional<ProcPages> procPages(std::string_view bytes);

// The value, in bytes, of a line such as "VmSwap:      12 kB" in PID/status or meminfo.
std::optional<std::uint64_t> kilobyteField(std::string_view text, std::string_view name);

// When the machine started, seconds since 1970: the line "btime" of the file /proc/stat.
std::optional<std::int64_t> bootTime(std::string_view text);

// The pid that the kernel gave out last, from the file /proc/loadavg; absent too for 0, nobody's.
std::optional<Pid> newestPid(std::string_view text);

// The arguments in PID/cmdline. Each ends with a zero byte, which the last may lack; empty ones stay.
std::vector<std::string> procArguments(std::string_view bytes);

// The path behind PID/exe or PID/cwd, without the kernel's remark that it is deleted.
std::string procLinkPath(std::string_view target);

// The inode in what PID/fd/N of a socket points to, "socket:[4711]"; absent for any other descriptor.
std::optional<std::uint64_t> socketInode(std::string_view target);

// A TCP socket that waits for connections.
struct Listener {
  std::uint64_t inode = 0;
  std::uint16_t port = 0;  // host byte order

  bool operator==(const Listener&) const = default;
};

// The listening sockets in net/tcp or net/tcp6, in the file's order.
std::vector<Listener> tcpListeners(std::string_view text);

}  // namespace tarnwick
