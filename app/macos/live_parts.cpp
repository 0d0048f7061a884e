#include "app/live_parts.h"

#include "app/remedies/macos/applications.h"
#include "app/remedies/macos/macos_fix_targets.h"
#include "context/macos/macos_browsers.h"

namespace tarnwick {

std::unique_ptr<Browsers> liveBrowsers(ToolRunner& tools) { return std::make_unique<MacosBrowsers>(tools); }

std::unique_ptr<FixTargets> liveFixTargets(const LiveFixTargets::Parts& parts, LiveMachine& /*machine*/,
                                           const Self& self) {
  return std::make_unique<MacosFixTargets>(parts, self.uid);
}

bool prTitlesChosen(const Self& /*self*/) { return isDefaultTrue("prTitles"); }

}  // namespace tarnwick
