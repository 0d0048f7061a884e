// The one entry of the toolkit's module (libtarnwick_panel.so). Program and module are built together:
// the job is passed as it lies in memory.
#pragma once

#include <variant>

#include "app/panel/panel_jobs.h"

namespace tarnwick::panel {

using PanelJob = std::variant<PanelApplication, PanelPicture>;

inline constexpr const char* panelModuleFile = "libtarnwick_panel.so";
inline constexpr const char* panelModuleEntry = "tarnwickPanel";
using PanelModuleEntry = int (*)(const PanelJob&);

}  // namespace tarnwick::panel

// The exit status of an application; 0 for a picture that was written.
extern "C" int tarnwickPanel(const tarnwick::panel::PanelJob& job);
