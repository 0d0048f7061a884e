// Single questions to the kernel of macOS, each answered with one value. Any thread.
#pragma once

#include <sys/proc_info.h>
#include <sys/sysctl.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "records/basics.h"

namespace tarnwick {

// One value of the kernel's table of named values. Absent when there is no such name, or its value is not of
// exactly this size.
template <class Value>
std::optional<Value> sysctlValue(const char* name) {
  Value value{};
  std::size_t size = sizeof value;
  if (::sysctlbyname(name, &value, &size, nullptr, 0) != 0 || size != sizeof value) return std::nullopt;
  return value;
}

// The kernel's record about one process: whose it is, its parent, its start. Absent when the process is gone
// or cannot be read.
std::optional<proc_bsdinfo> processRecord(Pid pid);

// The TCP ports on which a process waits, by its open descriptors. Host byte order, ascending, each once;
// empty on failure.
std::vector<std::uint16_t> listeningPorts(Pid pid);

}  // namespace tarnwick
