// System services that are known to work hard for a while and then stop by themselves.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace tarnwick {

struct SystemService {
  struct Settings {
    std::string_view label;
    std::string_view id;  // System Settings pane
  };
  std::array<std::string_view, 3> names;  // process names
  std::string_view title;                 // begins with the service's name
  std::string_view why;
  std::string_view fix;
  std::optional<Settings> settings;  // where the user can look; absent when there is no such pane
  std::string_view icon;
};

inline constexpr std::array<SystemService, 3> services{{
    {{"photoanalysisd", "mediaanalysisd", "photolibraryd"},
     "Photos is analyzing your pictures",
     "Photos scans your library to find faces, objects, and text. This takes a lot of processor power, "
     "mostly "
     "after you import many photos or update macOS.",
     "It stops by itself when it is done. To let it finish sooner, leave the Mac on and plugged in when you "
     "do "
     "not use it.",
     std::nullopt,
     "photo.on.rectangle.angled"},
    {{"bird", "cloudd", "fileproviderd"},
     "iCloud is syncing your files",
     "iCloud Drive uploads and downloads your files. This uses the processor and the network, mostly after "
     "you "
     "add many files or set up a new Mac.",
     "It stops by itself when it is done. To see what syncs, open your Apple Account settings and choose "
     "iCloud.",
     SystemService::Settings{"Open Apple Account settings", "com.apple.systempreferences.AppleIDSettings"},
     "icloud"},
    {{"mdworker_shared", "mdworker", "corespotlightd"},
     "Spotlight is indexing your files",
     "Spotlight reads new and changed files so that you can search them. This is busy after a macOS update "
     "or "
     "after you add many files.",
     "It stops by itself when it is done. To skip a folder, add it to the privacy list in Spotlight "
     "settings.",
     SystemService::Settings{"Open Spotlight settings", "com.apple.Spotlight-Settings.extension"},
     "magnifyingglass"},
}};

// Which service a process name belongs to; null when none.
const SystemService* serviceOf(std::string_view processName);

}  // namespace tarnwick
