// Where the desktops of Linux have what macOS keeps in System Settings: which programs, with which words,
// show who uses the disk and who starts at login. Plain values in, plain values out. Any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// The user's session, as far as it decides what opens.
struct DesktopSession {
  bool hasDisplay = false;            // somebody shows windows
  std::vector<std::string> desktops;  // as they call themselves, the most special first; may be empty
  std::string home;
  std::string autostart;                    // the user's folder of what starts at login
  std::vector<std::string> programFolders;  // where programs are looked for, the best first
};

// The one that this program runs in, as its environment says.
DesktopSession currentDesktop(const std::string& home);

// What shows this pane, each a program's name and its words, the best first: the desktop's own, then what
// does the same everywhere. Empty for a pane that only macOS has.
std::vector<std::vector<std::string>> settingsPlaces(std::string_view pane, const DesktopSession& session);

}  // namespace tarnwick
