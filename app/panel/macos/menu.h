// The panel's menu as the toolkit's. Main thread.
#pragma once

#import <AppKit/AppKit.h>

#include <vector>

#import "app/panel/macos/painter.h"

namespace tarnwick::panel {

// `perform` must outlive the menu.
NSMenu* makeMenu(const std::vector<MenuItem>& items, const Perform& perform);

}  // namespace tarnwick::panel
