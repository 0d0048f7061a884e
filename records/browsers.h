// The one table of browsers: how the system, people and scripts call them.
#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace tarnwick {

struct KnownBrowser {
  std::string_view app;       // the application's name, as in Proc::app
  std::string_view name;      // what people call it
  std::string_view bundleID;  // empty: it cannot be asked about its tabs
  std::string_view tabClass;  // the codes with which it tells the addresses of its tabs in one Apple event;
  std::string_view urlProperty;      // both empty: it only tells them to a script
  std::string_view desktopIDs = {};  // of its desktop entries on Linux, as packages, snaps and flatpaks name
                                     // them, parted by blanks
  bool onlyLinux = false;            // a browser only where processes have sessions
};

inline constexpr std::array<KnownBrowser, 11> knownBrowsers{{
    {"Safari", "Safari", "com.apple.Safari", "bTab", "pURL"},
    {"Google Chrome", "Chrome", "com.google.Chrome", "CrTb", "URL ",
     "google-chrome google-chrome-stable google-chrome-beta google-chrome-unstable com.google.Chrome"},
    {"Arc", "Arc", "company.thebrowser.Browser", "", ""},
    {"Firefox", "Firefox", "", "", "",
     "firefox firefox-esr firefox_firefox org.mozilla.firefox org.mozilla.Firefox firefox-bin"},
    {"Microsoft Edge", "Edge", "com.microsoft.edgemac", "CrTb", "URL ",
     "microsoft-edge microsoft-edge-stable microsoft-edge-beta com.microsoft.Edge"},
    {"Brave Browser", "Brave", "com.brave.Browser", "CrTb", "URL ",
     "brave-browser brave-browser-stable brave_brave brave com.brave.Browser"},
    {"Opera", "Opera", "", "", "", "opera opera-stable opera_opera com.opera.Opera com.opera.opera-stable"},
    {"Vivaldi", "Vivaldi", "com.vivaldi.Vivaldi", "CrTb", "URL ",
     "vivaldi vivaldi-stable com.vivaldi.Vivaldi"},
    {"Orion", "Orion", "", "", ""},
    {"Zen", "Zen", "", "", "", "zen zen-browser app.zen_browser.zen io.github.zen_browser.zen"},
    {"Chromium", "Chromium", "", "", "", "chromium chromium-browser chromium_chromium org.chromium.Chromium",
     true},
}};

// The browser with that application name; null when it is none.
constexpr const KnownBrowser* browserOfApp(std::string_view app) {
  const auto* found = std::ranges::find(knownBrowsers, app, &KnownBrowser::app);
  return found == knownBrowsers.end() ? nullptr : found;
}

// The browser that a desktop entry with that id starts; null when it starts none.
constexpr const KnownBrowser* browserOfDesktopID(std::string_view id) {
  const auto has = [&](const KnownBrowser& browser) {
    std::string_view ids = browser.desktopIDs;
    while (!ids.empty()) {
      const std::string_view next = ids.substr(0, ids.find(' '));
      if (next == id) return true;
      ids.remove_prefix(std::min(ids.size(), next.size() + 1));
    }
    return false;
  };
  const auto* found = std::ranges::find_if(knownBrowsers, has);
  return found == knownBrowsers.end() ? nullptr : found;
}

// The browser with that bundle identifier that can be asked about its tabs; null when it is none.
constexpr const KnownBrowser* scriptableBrowser(std::string_view bundleID) {
  const auto* found = std::ranges::find(knownBrowsers, bundleID, &KnownBrowser::bundleID);
  return bundleID.empty() || found == knownBrowsers.end() ? nullptr : found;
}

}  // namespace tarnwick
