#include "sampling/decode/app_unit.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <vector>

#include "records/text.h"
#include "records/utf8.h"

namespace tarnwick {
namespace {

constexpr std::string_view servicePart = ".service";
constexpr std::string_view scopePart = ".scope";

bool cutEnding(std::string_view& text, std::string_view ending) {
  if (!text.ends_with(ending)) return false;
  text.remove_suffix(ending.size());
  return true;
}

std::vector<std::string_view> pieces(std::string_view text, char separator) {
  std::vector<std::string_view> found;
  while (true) {
    const auto end = text.find(separator);
    found.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return found;
    text.remove_prefix(end + 1);
  }
}

// Undoes "\x2d" and its like; absent when a backslash starts anything else.
std::optional<std::string> unescapedUnitName(std::string_view text) {
  constexpr std::size_t escapeLength = 4;
  std::string plain;
  while (!text.empty()) {
    if (text.front() != '\\') {
      plain += text.front();
      text.remove_prefix(1);
      continue;
    }
    if (text.size() < escapeLength || text[1] != 'x') return std::nullopt;
    unsigned char byte = 0;
    const char* end = text.data() + escapeLength;
    const auto result = std::from_chars(text.data() + 2, end, byte, 16);
    if (result.ec != std::errc{} || result.ptr != end) return std::nullopt;
    plain += static_cast<char>(byte);
    text.remove_prefix(escapeLength);
  }
  return plain;
}

// The path in one line "hierarchy:controllers:path", if it is the line of the user manager's hierarchy:
// the unified one ("0::") or the named one of the older layout.
std::optional<std::string_view> managerPath(std::string_view line) {
  const auto first = line.find(':');
  const auto second = first == std::string_view::npos ? first : line.find(':', first + 1);
  if (second == std::string_view::npos) return std::nullopt;
  const std::string_view hierarchy = line.substr(0, first);
  const std::string_view controllers = line.substr(first + 1, second - first - 1);
  const bool unified = hierarchy == "0" && controllers.empty();
  if (!unified && controllers != "name=systemd") return std::nullopt;
  return line.substr(second + 1);
}

// The path down to the outermost application unit below the application slice of a user manager.
std::optional<std::string> appUnitOfPath(std::string_view path) {
  const std::vector<std::string_view> folders = pieces(path, '/');
  for (std::size_t i = 1; i < folders.size(); ++i) {
    const std::string_view manager = folders[i - 1];
    if (folders[i] != "app.slice" || !manager.starts_with("user@") || !manager.ends_with(servicePart))
      continue;
    const auto below = folders.begin() + static_cast<std::ptrdiff_t>(i) + 1;
    const auto unit =
        std::find_if(below, folders.end(), [](auto name) { return applicationID(name).has_value(); });
    if (unit != folders.end())
      return std::string(path.substr(0, static_cast<std::size_t>(unit->data() + unit->size() - path.data())));
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> applicationID(std::string_view unitName) {
  const bool scope = cutEnding(unitName, scopePart);
  if (!scope && !cutEnding(unitName, servicePart)) return std::nullopt;
  if (!scope) unitName = unitName.substr(0, unitName.find('@'));
  // Hyphens inside the launcher and the id are escaped, so those left separate the parts.
  std::vector<std::string_view> parts = pieces(unitName, '-');
  if (parts.front() != "app") return std::nullopt;
  if (scope) parts.pop_back();
  if (parts.size() != 2 && parts.size() != 3) return std::nullopt;
  const auto id = unescapedUnitName(parts.back());
  if (!id || !isPlainFileName(*id)) return std::nullopt;
  return repairUtf8(*id);
}

std::optional<std::string> appUnitFolder(std::string_view cgroupText) {
  for (const std::string_view line : pieces(cgroupText, '\n')) {
    const auto path = managerPath(line);
    if (!path) continue;
    if (auto unit = appUnitOfPath(*path)) return unit;
  }
  return std::nullopt;
}

}  // namespace tarnwick
