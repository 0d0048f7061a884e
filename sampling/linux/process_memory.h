// How much memory a process is charged for, at the lowest price: one small file for most processes, the
// dear "status" only where its answer can differ. Used by one thread at a time.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "records/basics.h"
#include "sampling/linux/machine_files.h"
#include "sampling/linux/proc_reader.h"

namespace tarnwick {

struct MemoryUse {
  std::uint64_t footprint = 0;  // bytes: anonymous + shared memory + swapped; see `sharedMemoryMatters`
  std::uint64_t resident = 0;   // bytes of the resident set
};

// The footprint in which memory that several processes have counts for each by its share, from
// PID/smaps_rollup. Absent on kernels before 5.4, which do not tell it apart from files.
std::optional<std::uint64_t> footprintOfShares(std::string_view rollup);

class ProcessMemory {
 public:
  // From resident - shared of "statm" the anonymous part is exact. Shared memory hides among the shared
  // pages, which are mostly files; below this many bytes it is left out of the footprint.
  static constexpr std::uint64_t sharedMemoryMatters = std::uint64_t{4} << 20U;

  // `machine` must outlive the object and is told of each pass by its owner.
  explicit ProcessMemory(MachineFiles& machine);

  // Forgets whether the machine swaps and holds shared memory.
  void beginPass() { machine_.reset(); }

  // So many pages in bytes; 0 when that does not fit.
  std::uint64_t bytes(std::uint64_t pages) const {
    return pages > mostPages / pageSize_ ? 0 : pages * pageSize_;
  }

  // Absent when the process is gone or cannot be read.
  std::optional<MemoryUse> of(const ProcessFiles& process);

 private:
  struct Machine {
    bool swaps = false;         // some swap is in use; also when meminfo is unreadable
    bool sharesMemory = false;  // shared memory exists; also when that is unknown
  };
  const Machine& machine();
  static std::optional<std::uint64_t> footprintFromStatus(const ProcessFiles& process);

  static constexpr std::uint64_t mostPages = ~std::uint64_t{0};

  MachineFiles& files_;
  std::uint64_t pageSize_;
  std::optional<Machine> machine_;  // absent until asked for in a pass
  std::array<char, 256> buffer_{};  // of the file that is being read
};

}  // namespace tarnwick
