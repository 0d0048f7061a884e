#include "sampling/linux/linux_machine_source.h"

#include <sched.h>
#include <sys/statvfs.h>

#include <utility>
#include <vector>

#include "sampling/decode/disk_space.h"
#include "sampling/decode/memory_info.h"
#include "sampling/decode/pressure.h"
#include "sampling/decode/processor_times.h"
#include "sampling/decode/start_times.h"
#include "sampling/decode/thermal_zone.h"
#include "system/small_file.h"

namespace tarnwick {
namespace {

constexpr std::size_t procTextLimit = 4'194'304;  // bytes; /proc/stat has a column per interrupt
constexpr std::size_t sysTextLimit = 4096;        // bytes; the kernel gives at most one page
constexpr int mostTripPoints = 64;
constexpr int mostProcessors = 1 << 20;

std::optional<std::int64_t> numberIn(const std::string& file) {
  const auto text = readSmallFile(file, sysTextLimit);
  return text ? numberAlone(*text) : std::nullopt;
}

ThermalZone readZone(const std::string& folder) {
  ThermalZone zone;
  zone.temperature = numberIn(folder + "/temp");
  if (!zone.temperature) return zone;
  for (int point = 0; point < mostTripPoints; ++point) {
    const std::string start = folder + "/trip_point_" + std::to_string(point);
    const auto type = readSmallFile(start + "_type", sysTextLimit);
    if (!type) break;
    addTripPoint(zone, *type, numberIn(start + "_temp"));
  }
  return zone;
}

// Processors in this program's affinity set; absent when the set has no room for all of the machine's.
std::optional<int> affinityCount(int processors) {
  cpu_set_t* set = CPU_ALLOC(static_cast<std::size_t>(processors));
  if (set == nullptr) return std::nullopt;
  const std::size_t size = CPU_ALLOC_SIZE(static_cast<std::size_t>(processors));
  std::optional<int> count;
  if (sched_getaffinity(0, size, set) == 0) count = CPU_COUNT_S(size, set);
  CPU_FREE(set);
  return count;
}

}  // namespace

LinuxMachineSource::LinuxMachineSource(Options options) : options_(std::move(options)) {}

std::string LinuxMachineSource::procText(const char* name) const {
  return readSmallFile(options_.procRoot + name, procTextLimit).value_or(std::string());
}

CpuTicks LinuxMachineSource::cpuTicks() { return cpuTicksFromStat(procText("/stat")); }

ThermalState LinuxMachineSource::thermal() {
  std::vector<ThermalZone> zones;
  const std::string folder = options_.sysRoot + "/class/thermal/";
  for (const std::string& name : folderEntries(folder)) {
    if (name.starts_with("thermal_zone")) zones.push_back(readZone(folder + name));
  }
  return thermalState(zones);
}

MemoryState LinuxMachineSource::memory() {
  const MemoryInfo info = memoryInfo(procText("/meminfo"));
  const auto stalls = pressureFromStalls(procText("/pressure/memory"));
  return {.ram = info.total.value_or(0),
          .swapUsed = swapUsed(info),
          .pressure = stalls ? stalls : pressureFromAvailable(info)};
}

int LinuxMachineSource::cores() {
  for (int processors = CPU_SETSIZE; processors <= mostProcessors; processors *= 2) {
    if (const auto count = affinityCount(processors)) return *count;
  }
  return 0;
}

std::optional<std::int64_t> LinuxMachineSource::bootTime() {
  if (!bootTime_) bootTime_ = tarnwick::bootTime(procText("/stat"));
  return bootTime_;
}

DiskSpace LinuxMachineSource::disk() {
  struct statvfs volume = {};
  if (statvfs("/", &volume) != 0) return {};
  return diskSpace(volume.f_bavail, volume.f_blocks, volume.f_frsize);
}

std::optional<std::int64_t> LinuxMachineSource::importantCapacity() { return std::nullopt; }

}  // namespace tarnwick
