#include "sampling/linux/linux_machine_source.h"

#include <unistd.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "sampling/decode/disk_space.h"
#include "sampling/decode/memory_info.h"
#include "sampling/decode/pressure.h"
#include "sampling/decode/thermal_zone.h"
#include "sampling/linux/control_groups.h"
#include "system/small_file.h"

namespace tarnwick {
namespace {

constexpr std::size_t sysTextLimit = 4096;  // bytes; the kernel gives at most one page
constexpr int mostTripPoints = 64;

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

}  // namespace

LinuxMachineSource::LinuxMachineSource(Options options, Files* volumes)
    : options_(std::move(options)), volumes_(volumes == nullptr ? direct_ : *volumes) {}

MachineFiles& LinuxMachineSource::files() {
  return options_.files == nullptr ? own_.emplace(options_.procRoot).files : *options_.files;
}

CpuTicks LinuxMachineSource::cpuTicks() { return files().cpuTicks(); }

ThermalState LinuxMachineSource::thermal() {
  std::vector<ThermalZone> zones;
  const std::string folder = options_.sysRoot + "/class/thermal/";
  for (const std::string& name : folderEntries(folder)) {
    if (name.starts_with("thermal_zone")) zones.push_back(readZone(folder + name));
  }
  return thermalState(zones);
}

MemoryState LinuxMachineSource::memory() {
  const MemoryInfo info = files().memory().value_or(MemoryInfo{});
  const auto stalls = pressureFromStalls(
      readSmallFile(options_.procRoot + "/pressure/memory", sysTextLimit).value_or(std::string()));
  return {.ram = info.total.value_or(0),
          .swapUsed = swapUsed(info),
          .pressure = stalls ? stalls : pressureFromAvailable(info),
          .inUse = memoryInUse(info)};
}

int LinuxMachineSource::cores() {
  const auto online = readSmallFile(options_.sysRoot + "/devices/system/cpu/online", sysTextLimit);
  const int count = online ? processorsInList(*online) : 0;
  return count > 0 ? count : static_cast<int>(std::max(::sysconf(_SC_NPROCESSORS_ONLN), 0L));
}

std::optional<std::int64_t> LinuxMachineSource::bootTime() { return files().bootTime(); }

// Absent for a volume that cannot be written or has no size, and where nothing is mounted.
std::optional<DiskSpace> LinuxMachineSource::writableSpace(const std::string& folder) {
  const auto volume = volumes_.volume(folder);
  if (!volume || volume->readOnly != 0) return std::nullopt;
  const DiskSpace space = diskSpace(volume->available, volume->blocks, volume->blockBytes);
  return space.total > 0 ? std::optional(space) : std::nullopt;
}

DiskSpace LinuxMachineSource::disk() {
  const auto system = writableSpace(options_.systemVolume);
  const auto user = writableSpace(options_.home);
  if (!system || !user) return (system ? system : user).value_or(DiskSpace{});
  return user->free < system->free ? *user : *system;
}

std::optional<std::int64_t> LinuxMachineSource::importantCapacity() { return std::nullopt; }

std::vector<ContainerGroup> LinuxMachineSource::containerGroups() {
  return ControlGroups(options_.cgroupRoot, options_.uid).containers();
}

}  // namespace tarnwick
