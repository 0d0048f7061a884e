// The running program's own cost, from the kernel's accounts.
#include "app/program/own_process.h"

#include <libproc.h>
#include <sys/resource.h>
#include <unistd.h>

namespace tarnwick {
namespace {

// Zeros when unreadable.
rusage_info_v4 ownUsage() {
  rusage_info_v4 usage{};
  // The interface is declared with a pointer to a pointer, but fills the record itself.
  auto* record = reinterpret_cast<rusage_info_t*>(&usage);
  if (::proc_pid_rusage(::getpid(), RUSAGE_INFO_V4, record) != 0) return {};
  return usage;
}

double milliseconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_usec) / 1000;
}

class MacosOwnCost final : public OwnCost {
 public:
  std::uint64_t footprint() override { return ownUsage().ri_phys_footprint; }
  std::uint64_t peakFootprint() override { return ownUsage().ri_lifetime_max_phys_footprint; }

  double childMilliseconds() override {
    rusage usage{};
    if (::getrusage(RUSAGE_CHILDREN, &usage) != 0) return 0;
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
  }
};

}  // namespace

std::unique_ptr<OwnCost> ownCost() { return std::make_unique<MacosOwnCost>(); }

}  // namespace tarnwick
