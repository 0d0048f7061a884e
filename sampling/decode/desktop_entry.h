// The text of a desktop entry (an application's ".desktop" file), made into values. Nothing here reads.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// No desktop entry is larger; longer files are not read.
inline constexpr std::size_t desktopEntryLimit = 1'048'576;  // bytes

// What the group "[Desktop Entry]" says.
struct DesktopEntryText {
  std::string name;       // in the user's language where the entry has it; empty when the entry has no name
  bool shown = false;     // an application that menus show
  std::string icon = {};  // a theme's name of it or a file's path; empty when the entry has none
  std::string command = {};  // what starts it; empty when nothing does
  bool terminal = false;     // it runs inside a terminal, whose application it is then part of

  bool operator==(const DesktopEntryText&) const = default;
};

// The variants of a localized key to look for, best first, for a locale such as "de_AT.UTF-8@euro":
// de_AT@euro, de_AT, de@euro, de. Empty for "C", "POSIX" and no locale.
std::vector<std::string> localeVariants(std::string_view locale);

// Absent when the text has no group "[Desktop Entry]".
std::optional<DesktopEntryText> desktopEntryText(std::string_view text,
                                                 const std::vector<std::string>& variants);

}  // namespace tarnwick
