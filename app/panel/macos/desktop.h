// What the desktop has for the panel: a display. Main thread.
#pragma once

namespace tarnwick::panel {

// Can this process show anything? Asked before the application object is made, which would end the process.
bool findDisplay();

}  // namespace tarnwick::panel
