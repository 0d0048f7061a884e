// A double of the kernel of macOS: it answers the calls of the files in macos/ from a table that a test
// fills, with Darwin's own records, and as Darwin answers. The newest `Kernel` is the one that is asked. One
// thread.
#pragma once

#include <libproc.h>
#include <mach/vm_statistics.h>
#include <sys/mount.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace tarnwick::darwin {

struct OpenDescriptor {
  std::int32_t number = 0;
  std::uint32_t type = PROX_FDTYPE_SOCKET;
  std::int32_t kind = SOCKINFO_TCP;
  std::int32_t state = TSI_S_LISTEN;
  std::uint16_t port = 0;  // host byte order
};

struct KernelProcess {
  std::uint32_t uid = 501;        // effective
  std::uint64_t started = 1'000;  // seconds since 1970
  std::string path = {};
  std::int32_t argumentCount = 0;
  std::string strings = {};  // path, padding, arguments, environment: what lies at the end of its stack
  std::string folder = {};
  std::uint64_t userNanoseconds = 0;
  std::uint64_t systemNanoseconds = 0;
  std::uint64_t footprint = 0;  // bytes
  std::vector<OpenDescriptor> descriptors = {};
};

// A text or a number as the bytes that the kernel hands out.
template <class Value>
std::string bytesOf(const Value& value) {
  return std::string(reinterpret_cast<const char*>(&value), sizeof value);
}

struct Kernel {
  Kernel();
  ~Kernel();
  Kernel(const Kernel&) = delete;
  Kernel& operator=(const Kernel&) = delete;

  std::map<pid_t, KernelProcess> processes;
  std::map<std::string, std::string> values;                 // of sysctlbyname: name and bytes
  std::uint64_t awakeNanoseconds = 0;                        // since the start
  std::pair<std::uint64_t, std::uint64_t> timebase{125, 3};  // nanoseconds for so many Mach ticks
  bool translated = false;  // the program's Mach clock counts nanoseconds, the kernel's records do not
  std::array<std::uint32_t, 4> ticks{};
  vm_statistics64 pages{};             // of 16 KiB
  std::vector<struct statfs> volumes;  // the first is "/"
  std::map<std::string, std::string> links;
  std::string executable;                                         // as it was started
  std::map<std::string, std::map<std::string, void*>> libraries;  // by path: names and what they stand for

  // Calls by what they ask for: "pids", "record", "descriptors", "socket", "usage", "path", "folder",
  // "arguments", "kill", "ticks", "pages", "statfs", "volumes".
  std::map<std::string, int> refused;                   // to fail, with this error number
  std::map<std::string, int> answers;                   // to return this, whatever was filled in
  std::function<void(const std::string& call)> before;  // what happens on the machine before an answer

  std::vector<std::pair<pid_t, int>> signals;  // that hit a process
  std::vector<std::string> programs;           // that this one was replaced by
  int rights = 0;                              // to ports, not given back
};

}  // namespace tarnwick::darwin
