// What AppKit does with other applications and for them.
#pragma once

#include <optional>
#include <string>

namespace tarnwick {

// Politely asks every running application with that identifier to quit; there may be none. Any thread.
void askApplicationsToQuit(const std::string& bundleID);

// Does this process belong to a session with a desktop? Not one that came over the network. Any thread.
bool isInDesktopSession();

// Opens an address in the application for it; false when the system refuses, absent when the text is no
// address. Main thread.
std::optional<bool> openAddress(const std::string& address);

// Replaces what is on the general pasteboard by this plain text. Main thread.
void copyToPasteboard(const std::string& text);

}  // namespace tarnwick
