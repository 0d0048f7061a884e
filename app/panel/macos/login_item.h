// Does the system start this program when the user logs in? Asked of the system's service for it, which knows
// only programs that lie in an application bundle. Main thread.
#pragma once

namespace tarnwick::panel {

// False also where the service is missing.
bool isLoginItem();

// Where the service is missing or refuses, nothing changes.
void setLoginItem(bool on);

}  // namespace tarnwick::panel
