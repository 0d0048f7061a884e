#include "sampling/macos/macos_machine_source.h"

#include <mach/mach.h>
#include <sys/mount.h>
#include <sys/sysctl.h>
#include <sys/time.h>

#include <algorithm>
#include <utility>

#include "sampling/macos/kernel_questions.h"

namespace tarnwick {

static_assert(HOST_CPU_LOAD_INFO_COUNT == CPU_STATE_MAX && CPU_STATE_MAX == 4);

MacosMachineSource::MacosMachineSource(Frameworks frameworks)
    : frameworks_(std::move(frameworks)), host_(::mach_host_self()) {}

MacosMachineSource::~MacosMachineSource() { ::mach_port_deallocate(::mach_task_self(), host_); }

CpuTicks MacosMachineSource::cpuTicks() {
  host_cpu_load_info load{};
  mach_msg_type_number_t count = HOST_CPU_LOAD_INFO_COUNT;
  if (::host_statistics(host_, HOST_CPU_LOAD_INFO, reinterpret_cast<host_info_t>(&load), &count) !=
      KERN_SUCCESS) {
    return {};
  }
  CpuTicks ticks;
  for (std::size_t state = 0; state < ticks_.size(); ++state) {
    const std::uint64_t counted = ticks_[state].advanceTo(load.cpu_ticks[state]);
    ticks.total += counted;
    if (state != CPU_STATE_IDLE) ticks.busy += counted;
  }
  return ticks;
}

// What applications hold, what is wired down, and what the compressor holds for others. 0 when the kernel
// does not tell.
std::uint64_t MacosMachineSource::memoryInUse() const {
  vm_statistics64 pages{};
  mach_msg_type_number_t count = HOST_VM_INFO64_COUNT;
  vm_size_t pageSize = 0;
  if (::host_page_size(host_, &pageSize) != KERN_SUCCESS ||
      ::host_statistics64(host_, HOST_VM_INFO64, reinterpret_cast<host_info64_t>(&pages), &count) !=
          KERN_SUCCESS) {
    return 0;
  }
  const std::uint64_t applications =
      pages.internal_page_count - std::min<std::uint64_t>(pages.purgeable_count, pages.internal_page_count);
  return (applications + pages.wire_count + pages.compressor_page_count) * pageSize;
}

MemoryState MacosMachineSource::memory() {
  const auto swap = sysctlValue<xsw_usage>("vm.swapusage");
  return {.ram = sysctlValue<std::uint64_t>("hw.memsize").value_or(0),
          .swapUsed = swap ? swap->xsu_used : 0,
          .pressure = sysctlValue<std::int32_t>("kern.memorystatus_vm_pressure_level"),
          .inUse = memoryInUse()};
}

int MacosMachineSource::cores() { return std::max(sysctlValue<std::int32_t>("hw.activecpu").value_or(0), 0); }

std::optional<std::int64_t> MacosMachineSource::bootTime() {
  const auto moment = sysctlValue<timeval>("kern.boottime");
  return moment ? std::optional<std::int64_t>(moment->tv_sec) : std::nullopt;
}

DiskSpace MacosMachineSource::disk() {
  struct statfs volume {};
  if (::statfs("/", &volume) != 0) return {};
  return diskSpace(volume.f_bavail, volume.f_blocks, volume.f_bsize);
}

}  // namespace tarnwick
