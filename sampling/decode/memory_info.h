// The memory of the machine and of a process in the texts of /proc. Takes the bytes of one file and never
// reads. Absent is whatever is missing, does not parse whole or overflows. Sizes are bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tarnwick {

// The value, in bytes, of a line such as "VmSwap:      12 kB" in PID/status.
std::optional<std::uint64_t> kilobyteField(std::string_view text, std::string_view name);

// What the file /proc/meminfo says.
struct MemoryInfo {
  std::optional<std::uint64_t> total;
  std::optional<std::uint64_t> available;  // free, or droppable without swapping
  std::optional<std::uint64_t> swapTotal;
  std::optional<std::uint64_t> swapFree;
  std::optional<std::uint64_t> shared;  // shared memory, which no file on a disk backs
};
MemoryInfo memoryInfo(std::string_view meminfo);

// Swap in use; 0 when one side is unknown or more is free than there is.
std::uint64_t swapUsed(const MemoryInfo& memory);

// Memory that is neither free nor droppable; 0 when one side is unknown or more is available than there is.
std::uint64_t memoryInUse(const MemoryInfo& memory);

// The pages of PID/statm that matter here.
struct ProcPages {
  std::uint64_t resident = 0;
  std::uint64_t shared = 0;  // part of `resident` that is backed by files or shared memory
};
std::optional<ProcPages> procPages(std::string_view bytes);

}  // namespace tarnwick
