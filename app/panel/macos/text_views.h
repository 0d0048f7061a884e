// Texts of the panel as views. Main thread.
#pragma once

#import "app/panel/macos/made_view.h"

#include "app/panel/panel_tree.h"

namespace tarnwick::panel {

// Wrapped, no wider than `width`.
MadeView makeLabel(const Label& label, double width);

}  // namespace tarnwick::panel
