#include "app/live_parts.h"

#include "app/remedies/linux/linux_fix_targets.h"
#include "app/settings/linux/user_defaults.h"
#include "context/linux/linux_browsers.h"
#include "sampling/linux/linux_process_source.h"
#include "system/environment.h"

namespace tarnwick {

std::unique_ptr<Browsers> liveBrowsers(ToolRunner& /*tools*/) { return std::make_unique<LinuxBrowsers>(); }

std::unique_ptr<FixTargets> liveFixTargets(const LiveFixTargets::Parts& parts, LiveMachine& machine,
                                           const Self& self) {
  // The machine of this system's folder has a source of this system's folder.
  const auto& processes = static_cast<const LinuxProcessSource&>(machine.processes());
  return std::make_unique<LinuxFixTargets>(parts, machine.workspace(),
                                           LinuxSignals(self.uid, processes.clock()));
}

bool prTitlesChosen(const Self& self) { return UserDefaults(configFolder(self.home)).isTrue("prTitles"); }

}  // namespace tarnwick
