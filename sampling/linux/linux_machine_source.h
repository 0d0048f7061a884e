// The machine's counters on Linux, from /proc, /sys, statvfs and the scheduler. The roots are parameters so
// that a machine can be laid out in a folder. Unreadable sources give the values named in machine_source.h.
#pragma once

#include <string>

#include "sampling/machine_source.h"

namespace tarnwick {

class LinuxMachineSource : public MachineSource {
 public:
  struct Options {
    std::string procRoot = "/proc";
    std::string sysRoot = "/sys";
  };

  explicit LinuxMachineSource(Options options);
  LinuxMachineSource() : LinuxMachineSource(Options()) {}

  CpuTicks cpuTicks() override;
  ThermalState thermal() override;
  MemoryState memory() override;
  int cores() override;

  // Read once: the kernel computes it from the time of day, so it moves by a second now and then.
  std::optional<std::int64_t> bootTime() override;

  DiskSpace disk() override;

  // Always absent: nothing on the volume is the system's to purge.
  std::optional<std::int64_t> importantCapacity() override;

 private:
  std::string procText(const char* name) const;  // a file below the root; empty when unreadable

  Options options_;
  std::optional<std::int64_t> bootTime_;
};

}  // namespace tarnwick
