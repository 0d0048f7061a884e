// The running applications of a Linux desktop session: the application units of the user's session manager,
// as the cgroup tree shows them. A unit counts when a desktop entry tells its name; everything that cannot
// be read is left out. Used by one thread at a time.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sampling/linux/app_slice.h"
#include "sampling/linux/desktop_entries.h"
#include "sampling/workspace.h"

namespace tarnwick {

class XdgWorkspace : public Workspace {
 public:
  // `entries` must live longer. `cgroupRoot` is where the cgroup tree is mounted.
  XdgWorkspace(DesktopEntries& entries, std::uint32_t uid, std::string cgroupRoot = usualCgroupRoot);

  // One per unit, by unit path in byte order: the kernel lists folders in an order that changes. The pid is
  // the smallest of the unit, which is the process that the launcher started unless pids wrapped since.
  std::vector<RunningApp> runningApps() override;

 private:
  DesktopEntries& entries_;
  std::uint32_t uid_;
  std::string cgroupRoot_;
};

}  // namespace tarnwick
