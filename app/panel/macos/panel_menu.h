// The menu behind the footer's last button. Main thread.
#pragma once

#import <AppKit/AppKit.h>

#include <vector>

#include "app/panel/macos/painter.h"

namespace tarnwick::panel {

// `perform` must outlive the menu.
NSMenu* makeMenu(const std::vector<MenuItem>& items, const Perform& perform);

// Blocks until the user has chosen or gone elsewhere; what was chosen is performed by then or soon after. The
// menu opens where the event happened in the panel; under `button`, which may be nil, when it was no click.
void popUp(NSMenu* menu, NSView* panel, NSView* button);

}  // namespace tarnwick::panel
