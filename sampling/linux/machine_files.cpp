#include "sampling/linux/machine_files.h"

#include <string>
#include <utility>

#include "sampling/decode/start_times.h"

namespace tarnwick {

CpuTicks MachineFiles::cpuTicks() {
  const std::string text = reader_.machineFile("stat");
  bootTimeOfTicks_ = tarnwick::bootTime(text);
  return cpuTicksFromStat(text);
}

void MachineFiles::beginPass() {
  bootTime_ = std::exchange(bootTimeOfTicks_, std::nullopt);
  memory_.reset();
}

const std::optional<MemoryInfo>& MachineFiles::memory() {
  if (!memory_) {
    const std::string text = reader_.machineFile("meminfo");
    memory_ = text.empty() ? std::nullopt : std::optional(memoryInfo(text));
  }
  return *memory_;
}

std::optional<std::int64_t> MachineFiles::bootTime() {
  if (!bootTime_) bootTime_ = tarnwick::bootTime(reader_.machineFile("stat"));
  return *bootTime_;
}

}  // namespace tarnwick
