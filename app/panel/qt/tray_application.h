// The running application: tray icon, panel, model and main loop.
#pragma once

#include "app/panel/panel_jobs.h"

namespace tarnwick::panel {

// Until the user quits. The exit status; see showApplication().
int runTrayApplication(const PanelApplication& application);

}  // namespace tarnwick::panel
