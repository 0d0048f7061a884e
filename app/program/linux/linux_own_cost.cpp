#include "app/program/linux/linux_own_cost.h"

#include <sys/resource.h>

#include <algorithm>
#include <string>

#include "sampling/decode/memory_info.h"
#include "system/small_file.h"

namespace tarnwick {
namespace {

std::string ownStatus() {
  constexpr std::size_t mostBytes = 64U << 10U;
  return readSmallFile("/proc/self/status", mostBytes).value_or("");
}

std::uint64_t footprintIn(const std::string& status) {
  std::uint64_t bytes = 0;
  for (const char* part : {"RssAnon", "RssShmem", "VmSwap"}) bytes += kilobyteField(status, part).value_or(0);
  return bytes;
}

double milliseconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_usec) / 1000;
}

}  // namespace

std::uint64_t LinuxOwnCost::footprint() { return footprintIn(ownStatus()); }

std::uint64_t LinuxOwnCost::peakFootprint() {
  const std::string status = ownStatus();
  return std::max(kilobyteField(status, "VmHWM").value_or(0), footprintIn(status));
}

double LinuxOwnCost::childMilliseconds() {
  rusage usage = {};
  if (getrusage(RUSAGE_CHILDREN, &usage) != 0) return 0;
  return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

std::unique_ptr<OwnCost> ownCost() { return std::make_unique<LinuxOwnCost>(); }

}  // namespace tarnwick
