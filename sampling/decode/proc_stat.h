// What the files of /proc say of one process beside its memory. Takes the bytes of one file and never reads;
// everything in them may be hostile, because a process chooses its own name. Absent is whatever does not
// parse whole or overflows. Texts in the results are valid UTF-8.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "records/basics.h"

namespace tarnwick {

// The fields of PID/stat that matter here.
struct ProcStat {
  std::string name;             // at most 15 characters, kernel threads more; any bytes but zero
  char state = '?';             // the kernel's letter: R, S, D, T, Z and others
  Pid ppid = 0;                 // 0 for the first process and the first kernel thread
  Pid session = 0;              // of its session's leader; 0 when that is outside the reader's pid namespace
  std::int32_t terminal = 0;    // device number of the controlling terminal; 0 without one
  std::uint32_t flags = 0;      // the kernel's PF_ bits
  std::uint64_t userTicks = 0;  // clock ticks, all threads
  std::uint64_t systemTicks = 0;  // clock ticks, all threads
  std::uint64_t startTicks = 0;   // clock ticks from the machine's start to the process's start
  std::int64_t threads = 1;       // a process may go on after its first thread, whose state this is, ended

  bool kernelThread() const { return (flags & 0x0020'0000U) != 0; }  // PF_KTHREAD
  // Ended, waits for its parent.
  bool zombie() const { return (state == 'Z' || state == 'X') && threads <= 1; }
};
std::optional<ProcStat> procStat(std::string_view bytes);

// The pages of the resident set in PID/stat, which everybody may read; 0 when they are missing. Apart from
// the rest because the user's own processes have a better source.
std::uint64_t residentPages(std::string_view bytes);

// The pid that the kernel gave out last, from the file /proc/loadavg; absent too for 0, nobody's.
std::optional<Pid> newestPid(std::string_view text);

// The path behind PID/exe or PID/cwd, without the kernel's remark that it is deleted.
std::string procLinkPath(std::string_view target);

}  // namespace tarnwick
