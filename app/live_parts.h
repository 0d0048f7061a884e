// The parts of a live run that act on this system; its own folder makes them.
#pragma once

#include <memory>

#include "app/remedies/live_fix_targets.h"
#include "context/browsers.h"
#include "sampling/live_machine.h"
#include "sampling/tools/tool_runner.h"

namespace tarnwick {

// `tools` outlives the result.
std::unique_ptr<Browsers> liveBrowsers(ToolRunner& tools);

// `parts` and `machine` outlive the result.
std::unique_ptr<FixTargets> liveFixTargets(const LiveFixTargets::Parts& parts, LiveMachine& machine,
                                           const Self& self);

// Did the user choose for good that pull-request titles are looked up? Any thread.
bool prTitlesChosen(const Self& self);

}  // namespace tarnwick
