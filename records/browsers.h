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
  std::string_view urlProperty;  // both empty: it only tells them to a script
};

inline constexpr std::array<KnownBrowser, 10> knownBrowsers{{
    {"Safari", "Safari", "com.apple.Safari", "bTab", "pURL"},
    {"Google Chrome", "Chrome", "com.google.Chrome", "CrTb", "URL "},
    {"Arc", "Arc", "company.thebrowser.Browser", "", ""},
    {"Firefox", "Firefox", "", "", ""},
    {"Microsoft Edge", "Edge", "com.microsoft.edgemac", "CrTb", "URL "},
    {"Brave Browser", "Brave", "com.brave.Browser", "CrTb", "URL "},
    {"Opera", "Opera", "", "", ""},
    {"Vivaldi", "Vivaldi", "com.vivaldi.Vivaldi", "CrTb", "URL "},
    {"Orion", "Orion", "", "", ""},
    {"Zen", "Zen", "", "", ""},
}};

// The browser with that application name; null when it is none.
constexpr const KnownBrowser* browserOfApp(std::string_view app) {
  const auto* found = std::ranges::find(knownBrowsers, app, &KnownBrowser::app);
  return found == knownBrowsers.end() ? nullptr : found;
}

// The browser with that bundle identifier that can be asked about its tabs; null when it is none.
constexpr const KnownBrowser* scriptableBrowser(std::string_view bundleID) {
  const auto* found = std::ranges::find(knownBrowsers, bundleID, &KnownBrowser::bundleID);
  return bundleID.empty() || found == knownBrowsers.end() ? nullptr : found;
}

}  // namespace tarnwick
