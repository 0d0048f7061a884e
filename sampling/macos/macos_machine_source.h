// The machine's counters on macOS: Mach host statistics, the kernel's named values and statfs. The two
// answers that only Objective-C frameworks give are handed in. Unreadable sources give the values named in
// machine_source.h. Used by one thread at a time.
#pragma once

#include <mach/mach_types.h>

#include <array>
#include <cstdint>
#include <functional>
#include <optional>

#include "sampling/decode/disk_space.h"
#include "sampling/decode/processor_times.h"
#include "sampling/decode/start_times.h"
#include "sampling/machine_source.h"

namespace tarnwick {

class MacosMachineSource : public MachineSource {
 public:
  struct Frameworks {
    std::function<ThermalState()> thermal;
    std::function<std::optional<std::int64_t>()> importantCapacity;
  };

  explicit MacosMachineSource(Frameworks frameworks);
  ~MacosMachineSource() override;
  MacosMachineSource(const MacosMachineSource&) = delete;
  MacosMachineSource& operator=(const MacosMachineSource&) = delete;

  CpuTicks cpuTicks() override;
  ThermalState thermal() override { return frameworks_.thermal(); }
  MemoryState memory() override;
  int cores() override;
  std::optional<std::int64_t> bootTime() override;
  DiskSpace disk() override;
  std::optional<std::int64_t> importantCapacity() override { return frameworks_.importantCapacity(); }

 private:
  std::uint64_t memoryInUse() const;

  Frameworks frameworks_;
  host_t host_;  // a right of our own, given back at the end
  // The kernel's counters are 32 bits wide: user, system, idle and nice ticks in its own order.
  std::array<WrappingCounter, 4> ticks_;
};

}  // namespace tarnwick
