// The browsers that can be asked about their tabs, by bundle identifier.
#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace tarnwick {

inline constexpr std::array<std::string_view, 6> scriptableBrowsers{
    "com.apple.Safari",      "com.google.Chrome", "company.thebrowser.Browser",
    "com.microsoft.edgemac", "com.brave.Browser", "com.vivaldi.Vivaldi",
};

constexpr bool isScriptable(std::string_view bundleID) {
  return std::find(scriptableBrowsers.begin(), scriptableBrowsers.end(), bundleID) !=
         scriptableBrowsers.end();
}

}  // namespace tarnwick
