// The machine's counters on Linux, from /proc, /sys and statvfs. The roots are parameters so that a machine
// can be laid out in a folder. Unreadable sources give the values named in machine_source.h.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sampling/linux/machine_files.h"
#include "sampling/linux/proc_reader.h"
#include "sampling/machine_source.h"
#include "system/files.h"

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
    // What the process source reads in the same check too; outlives the source. Null: read anew each time.
    MachineFiles* files = nullptr;
  };

  // `volumes` tells about volumes, of which one may not answer; null: they are asked here and now.
  explicit LinuxMachineSource(Options options, Files* volumes = nullptr);
  LinuxMachineSource() : LinuxMachineSource(Options()) {}

  CpuTicks cpuTicks() override;
  ThermalState thermal() override;
  MemoryState memory() override;
  int cores() override;

  // Start times are reckoned with the same one.
  std::optional<std::int64_t> bootTime() override;

  // Of the system's volume and the home folder's, the one with less free. A volume that cannot be written is
  // an image, full by nature.
  DiskSpace disk() override;

  // Always absent: nothing on the volume is the system's to purge.
  std::optional<std::int64_t> importantCapacity() override;

  std::vector<ContainerGroup> containerGroups() override;

 private:
  struct OwnFiles {
    explicit OwnFiles(const std::string& procRoot) : reader(procRoot) {}
    ProcReader reader;
    MachineFiles files{reader};
  };
  MachineFiles& files();

  std::optional<DiskSpace> writableSpace(const std::string& folder);

  Options options_;
  std::optional<OwnFiles> own_;
  DirectFiles direct_;
  Files& volumes_;
};

}  // namespace tarnwick
