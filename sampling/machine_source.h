// What one operating system must answer about the machine as a whole. Nothing here fails: what cannot be
// had is the neutral value named at the function. Used by one thread at a time.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "records/snapshot.h"
#include "sampling/container_group.h"
#include "sampling/decode/disk_space.h"
#include "sampling/decode/processor_times.h"

namespace tarnwick {

struct MemoryState {
  std::uint64_t ram = 0;                 // bytes installed; 0 when unknown
  std::uint64_t swapUsed = 0;            // bytes; 0 when unknown
  std::optional<std::int32_t> pressure;  // 1 normal, 2 warning, 4 critical; absent when unknown
  std::uint64_t inUse = 0;               // bytes of `ram` that cannot be given out at once; 0 when unknown
};

class MachineSource {
 public:
  virtual ~MachineSource() = default;

  // Zeros when unreadable.
  virtual CpuTicks cpuTicks() = 0;

  // Nominal when unknown.
  virtual ThermalState thermal() = 0;

  virtual MemoryState memory() = 0;

  // Processor cores that are switched on, whichever of them this program may use; 0 when unknown.
  virtual int cores() = 0;

  // When the machine started, whole seconds since 1970; absent when unknown.
  virtual std::optional<std::int64_t> bootTime() = 0;

  // Space on "/", or where the system keeps it apart from the user's files, on the one of both volumes that
  // has less; zeros when unknown.
  virtual DiskSpace disk() = 0;

  // Space on "/" that includes what the system can purge for important data, in bytes. Slow; absent
  // where the system knows no such figure, and 0 where it only says so.
  virtual std::optional<std::int64_t> importantCapacity() = 0;

  // The containers that run on this system itself; empty where they live in a virtual machine.
  virtual std::vector<ContainerGroup> containerGroups() { return {}; }
};

}  // namespace tarnwick
