#include "app/remedies/linux/settings_places.h"

#include <algorithm>
#include <array>

#include "system/environment.h"

namespace tarnwick {
namespace {

constexpr std::string_view storage = "com.apple.settings.Storage";
constexpr std::string_view loginItems = "com.apple.LoginItems-Settings.extension";

// Words that stand for a folder of the user's.
constexpr std::string_view homeFolder = "~";
constexpr std::string_view autostartFolder = "~autostart";

struct Place {
  std::string_view desktop;  // empty: any
  std::string_view pane;
  std::string_view program;
  std::string_view word = {};  // empty: none
};

// GNOME's own settings have no list of what starts at login in most versions, so whoever has one comes first;
// they refuse to open elsewhere. No desktop's settings tell what fills the disk: each has a program for that.
// Plasma 5 gave its settings a number. Names that look like addresses are flatpaks'.
constexpr std::array<Place, 31> places{{
    {"GNOME", loginItems, "gnome-session-properties"},
    {"GNOME", loginItems, "gnome-tweaks"},
    {"GNOME", loginItems, "gnome-control-center", "applications"},
    {"KDE", loginItems, "systemsettings", "kcm_autostart"},
    {"KDE", loginItems, "systemsettings5", "kcm_autostart"},
    {"KDE", loginItems, "kcmshell6", "kcm_autostart"},
    {"KDE", loginItems, "kcmshell5", "kcm_autostart"},
    {"XFCE", loginItems, "xfce4-session-settings"},
    {"MATE", loginItems, "mate-session-properties"},
    {"X-Cinnamon", loginItems, "cinnamon-settings", "startup"},
    {"LXQt", loginItems, "lxqt-config-session"},
    {"LXDE", loginItems, "lxsession-edit"},
    {"", loginItems, "gnome-session-properties"},
    {"", loginItems, "xfce4-session-settings"},
    {"", loginItems, "mate-session-properties"},
    {"", loginItems, "lxqt-config-session"},
    {"", loginItems, "xdg-open", autostartFolder},
    {"GNOME", storage, "baobab"},
    {"GNOME", storage, "org.gnome.baobab"},
    {"KDE", storage, "filelight"},
    {"KDE", storage, "org.kde.filelight"},
    {"MATE", storage, "mate-disk-usage-analyzer"},
    {"LXQt", storage, "qdirstat"},
    {"", storage, "baobab"},
    {"", storage, "org.gnome.baobab"},
    {"", storage, "filelight"},
    {"", storage, "org.kde.filelight"},
    {"", storage, "mate-disk-usage-analyzer"},
    {"", storage, "qdirstat"},
    {"", storage, "gnome-disks"},
    {"", storage, "xdg-open", homeFolder},
}};

bool isSameName(std::string_view a, std::string_view b) {
  const auto small = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  return std::ranges::equal(a, b, {}, small, small);
}

std::vector<std::string> wordsOf(const Place& place, const DesktopSession& session) {
  std::vector<std::string> words{std::string(place.program)};
  if (place.word == homeFolder) {
    words.push_back(session.home);
  } else if (place.word == autostartFolder) {
    words.push_back(session.autostart);
  } else if (!place.word.empty()) {
    words.emplace_back(place.word);
  }
  return words;
}

std::vector<std::string> namesIn(std::string_view list) {
  std::vector<std::string> names;
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(':'), list.size());
    if (end > 0) names.emplace_back(list.substr(0, end));
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return names;
}

}  // namespace

DesktopSession currentDesktop(const std::string& home) {
  const auto isNamed = [](const char* name) { return !environmentVariable(name).value_or("").empty(); };
  return {.hasDisplay = isNamed("WAYLAND_DISPLAY") || isNamed("DISPLAY"),
          .desktops = namesIn(environmentVariable("XDG_CURRENT_DESKTOP").value_or("")),
          .home = home,
          .autostart = configFolder(home) + "/autostart",
          .programFolders = {"/usr/bin", "/usr/local/bin", "/bin", "/run/current-system/sw/bin",
                             "/var/lib/flatpak/exports/bin"}};
}

std::vector<std::vector<std::string>> settingsPlaces(std::string_view pane, const DesktopSession& session) {
  std::vector<std::string> desktops = session.desktops;
  desktops.emplace_back();  // any, after all that have a name
  std::vector<std::vector<std::string>> all;
  for (const std::string& desktop : desktops) {
    for (const Place& place : places) {
      if (place.pane == pane && isSameName(place.desktop, desktop)) all.push_back(wordsOf(place, session));
    }
  }
  return all;
}

}  // namespace tarnwick
