// The machine's counters on Linux, from /proc, /sys and statvfs. The roots are parameters so that a machine
// can be laid out in a folder. Unreadable sources give the values named in machine_source.h.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sampling/machine_source.h"

namespace tarnwick {

class LinuxMachineSource : public MachineSource {
 public:
  struct Options {
    std::string procRoot = "/proc";
    std::string sysRoot = "/sys";
    std::string systemVolume = "/";
    std::string cgroupRoot = "/sys/fs/cgroup";
    std::uint32_t uid = 0;   // whose own containers are looked for beside the system's
    std::string home = "/";  // the other volume that can fill up is the one that holds this folder
  };

  explicit LinuxMachineSource(Options options);
  LinuxMachineSource() : LinuxMachineSource(Options()) {}

  CpuTicks cpuTicks() override;
  ThermalState thermal() override;
  MemoryState memory() override;
  int cores() override;

  // Read each time: the kernel computes it from the time of day, and that may have been set since.
  std::optional<std::int64_t> bootTime() override;

  // Of the system's volume and the home folder's, the one with less free. A volume that cannot be written is
  // an image, full by nature.
  DiskSpace disk() override;

  // Always absent: nothing on the volume is the system's to purge.
  std::optional<std::int64_t> importantCapacity() override;

  std::vector<ContainerGroup> containerGroups() override;

 private:
  std::string procText(const char* name) const;  // a file below the root; empty when unreadable

  Options options_;
};

}  // namespace tarnwick
