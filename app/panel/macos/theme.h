// The system's fonts and colours for the roles of the panel tree. The colours follow the appearance that is
// current when they are drawn. Main thread.
#pragma once

#import <AppKit/AppKit.h>

#include "app/panel/panel_tree.h"

namespace tarnwick::panel {

struct Theme {
  static NSColor* colour(ColourRole role);
  static NSFont* font(FontRole role);
  static NSFont* buttonFont();
};

}  // namespace tarnwick::panel
