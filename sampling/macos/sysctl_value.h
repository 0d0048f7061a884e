// One value of the kernel's table of named values. Any thread.
#pragma once

#include <sys/sysctl.h>

#include <cstddef>
#include <optional>

namespace tarnwick {

// Absent when there is no such name, or its value is not of exactly this size.
template <class Value>
std::optional<Value> sysctlValue(const char* name) {
  Value value{};
  std::size_t size = sizeof value;
  if (::sysctlbyname(name, &value, &size, nullptr, 0) != 0 || size != sizeof value) return std::nullopt;
  return value;
}

}  // namespace tarnwick
