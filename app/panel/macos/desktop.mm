#import "app/panel/macos/desktop.h"

#include "app/remedies/macos/applications.h"

namespace tarnwick::panel {

bool findDisplay() { return isInDesktopSession(); }

}  // namespace tarnwick::panel
