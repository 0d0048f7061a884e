// The system's fonts and colours for the roles of the panel tree. The colours follow the appearance that is
// current when they are drawn.
#pragma once

#import <AppKit/AppKit.h>

#include "app/panel/panel_tree.h"

namespace tarnwick::panel {

NSFont* fontOf(FontRole role);
NSFont* buttonFont();
NSColor* colourOf(ColourRole role);

}  // namespace tarnwick::panel
