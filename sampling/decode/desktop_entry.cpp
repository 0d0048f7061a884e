#include "sampling/decode/desktop_entry.h"

#include <algorithm>

#include "records/limits.h"
#include "records/text.h"
#include "records/utf8.h"

namespace tarnwick {
namespace {

constexpr std::string_view entryBlanks = " \t\r";

// Takes the next line off `text`, without blanks at its ends.
std::string_view takeTrimmedLine(std::string_view& text) { return trimmed(takeLine(text), entryBlanks); }

// The next line that may say something here, trimmed; empty when none is left. Three quarters of an entry are
// translations of what it is for, and a look at a line's first letter is enough to pass them.
std::string_view takeTellingLine(std::string_view& text) {
  constexpr std::string_view firstLetters = "[ITENH";
  while (!text.empty()) {
    std::string_view line = takeLine(text);
    while (!line.empty() && entryBlanks.find(line.front()) != std::string_view::npos) line.remove_prefix(1);
    if (!line.empty() && firstLetters.find(line.front()) != std::string_view::npos)
      return trimmed(line, entryBlanks);
  }
  return {};
}

// Moves to the first line of the group; false when there is none.
bool enterGroup(std::string_view& text) {
  while (!text.empty()) {
    if (takeTrimmedLine(text) == "[Desktop Entry]") return true;
  }
  return false;
}

// The byte that a backslash and `letter` stand for; absent for a pair that means nothing.
std::optional<char> escaped(char letter) {
  switch (letter) {
    case 's':
      return ' ';
    case 'n':
      return '\n';
    case 't':
      return '\t';
    case 'r':
      return '\r';
    case '\\':
      return '\\';
    default:
      return std::nullopt;
  }
}

std::string unescapedValue(std::string_view value) {
  std::string text;
  text.reserve(value.size());
  for (std::size_t at = 0; at < value.size(); ++at) {
    const auto meant = value[at] == '\\' && at + 1 < value.size() ? escaped(value[at + 1]) : std::nullopt;
    text += meant.value_or(value[at]);
    if (meant) ++at;
  }
  return text;
}

// How good a name key is: 0 for the best variant, more for worse ones, then the plain "Name"; absent for
// every other key.
std::optional<std::size_t> nameRank(std::string_view key, const std::vector<std::string>& variants) {
  constexpr std::string_view plain = "Name";
  if (!key.starts_with(plain)) return std::nullopt;
  key.remove_prefix(plain.size());
  if (key.empty()) return variants.size();
  if (key.size() < 2 || key.front() != '[' || key.back() != ']') return std::nullopt;
  const auto found = std::find(variants.begin(), variants.end(), key.substr(1, key.size() - 2));
  if (found == variants.end()) return std::nullopt;
  return static_cast<std::size_t>(found - variants.begin());
}

}  // namespace

std::vector<std::string> localeVariants(std::string_view locale) {
  std::string modifier;
  if (const auto at = locale.find('@'); at != std::string_view::npos) {
    modifier = locale.substr(at);
    locale = locale.substr(0, at);
  }
  const std::string place(locale.substr(0, locale.find('.')));
  if (place.empty() || place == "C" || place == "POSIX") return {};
  const std::string language = place.substr(0, place.find('_'));
  std::vector<std::string> variants;
  for (const std::string& variant : {place + modifier, place, language + modifier, language}) {
    if (std::find(variants.begin(), variants.end(), variant) == variants.end()) variants.push_back(variant);
  }
  return variants;
}

std::optional<DesktopEntryText> desktopEntryText(std::string_view text,
                                                 const std::vector<std::string>& variants) {
  if (!enterGroup(text)) return std::nullopt;
  std::string_view name;
  std::string_view icon;
  std::string_view command;
  bool terminal = false;
  std::size_t best = variants.size() + 1;
  bool application = false;
  bool hidden = false;
  while (!text.empty()) {
    const std::string_view line = takeTellingLine(text);
    if (line.starts_with('[')) break;  // actions and other groups have names of their own
    const auto equals = line.find('=');
    if (equals == std::string_view::npos) continue;
    const std::string_view key = trimmed(line.substr(0, equals), entryBlanks);
    const std::string_view value = trimmed(line.substr(equals + 1), entryBlanks);
    if (key == "Icon" && icon.empty()) icon = value;
    if (key == "Type") application = value == "Application";
    if (key == "Exec") command = value;
    if (key == "Terminal") terminal = value == "true";
    if (key == "NoDisplay" || key == "Hidden") hidden = hidden || value == "true";
    const auto rank = nameRank(key, variants);
    if (!rank || *rank >= best || value.empty()) continue;
    best = *rank;
    name = value;
  }
  name = name.substr(0, longestEntryText);
  icon = icon.substr(0, longestEntryText);
  if (command.size() > longestEntryText) command = {};
  return DesktopEntryText{.name = repairUtf8(unescapedValue(name), longestEntryName),
                          .shown = application && !hidden,
                          .icon = repairUtf8(unescapedValue(icon)),
                          .command = application ? unescapedValue(command) : std::string(),
                          .terminal = terminal};
}

}  // namespace tarnwick
