#include "context/tabs.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <map>
#include <unordered_set>
#include <utility>

#include "records/limits.h"

namespace tarnwick {
namespace {

constexpr int fewestTabsOfPile = 3;
constexpr std::size_t mostPiles = 3;
constexpr std::size_t longestHost = 255;  // bytes; longer than any name that can be looked up

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isHexDigit(char c) { return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

bool isScheme(std::string_view text) {
  return !text.empty() && isLetter(text.front()) && std::all_of(text.begin(), text.end(), [](char c) {
    return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.';
  });
}

// Letters, digits, the marks that may stand in a name, and everything beyond ASCII.
bool mayStandInName(char c) {
  constexpr std::string_view marks = "-._~!$&'()*+,;=";
  return isLetter(c) || isDigit(c) || marks.find(c) != std::string_view::npos ||
         static_cast<unsigned char>(c) >= 0x80U;
}

bool isName(std::string_view host) {
  for (std::size_t i = 0; i < host.size(); ++i) {
    if (mayStandInName(host[i])) continue;
    if (host[i] != '%' || host.size() - i < 3) return false;
    if (!isHexDigit(host[i + 1]) || !isHexDigit(host[i + 2])) return false;
    i += 2;
  }
  return !host.empty();
}

bool isBracketable(std::string_view host) {
  constexpr std::string_view marks = ":.%-_~";
  return !host.empty() && std::all_of(host.begin(), host.end(), [&](char c) {
    return isLetter(c) || isDigit(c) || marks.find(c) != std::string_view::npos;
  });
}

// Nothing, or a colon and digits, of which there may be none.
bool isPortPart(std::string_view rest) {
  return rest.empty() || (rest.front() == ':' && std::all_of(rest.begin() + 1, rest.end(), isDigit));
}

// What stands between "//" and the path; absent for an address without it.
std::optional<std::string_view> authority(std::string_view url) {
  const std::size_t slashes = url.find("//");
  if (slashes == std::string_view::npos) return std::nullopt;
  const std::string_view before = url.substr(0, slashes);
  const bool afterScheme = !before.empty() && before.back() == ':' && isScheme(before.substr(0, slashes - 1));
  if (!before.empty() && !afterScheme) return std::nullopt;
  const std::string_view rest = url.substr(slashes + 2);
  return rest.substr(0, rest.find_first_of("/?#"));
}

std::optional<std::string_view> hostOfAuthority(std::string_view text) {
  // The last "@", as browsers do: a password may hold one that nobody encoded.
  text = text.substr(text.rfind('@') + 1);
  if (!text.empty() && text.front() == '[') {
    const std::size_t close = text.find(']');
    if (close == std::string_view::npos || !isPortPart(text.substr(close + 1))) return std::nullopt;
    const std::string_view inside = text.substr(1, close - 1);
    return isBracketable(inside) ? std::optional(inside) : std::nullopt;
  }
  const std::size_t colon = std::min(text.find(':'), text.size());
  if (!isPortPart(text.substr(colon))) return std::nullopt;
  const std::string_view host = text.substr(0, colon);
  return isName(host) ? std::optional(host) : std::nullopt;
}

int asInt(std::size_t count) {
  return static_cast<int>(std::min<std::size_t>(count, std::numeric_limits<int>::max()));
}

// As a text between double quotes of the script language.
std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result;
}

std::string tellApplication(std::string_view bundleID) {
  return "tell application id \"" + escaped(bundleID) + "\"";
}

}  // namespace

std::optional<std::string> tabHost(std::string_view url) {
  const std::optional<std::string_view> between = authority(url);
  const std::optional<std::string_view> found = between ? hostOfAuthority(*between) : std::nullopt;
  if (!found || found->size() > longestHost) return std::nullopt;
  std::string_view host = *found;
  if (host.substr(0, 4) == "www.") host.remove_prefix(4);
  if (host.empty()) return std::nullopt;
  return std::string(host);
}

Tabs condense(const std::vector<std::string>& urls) {
  const std::unordered_set<std::string_view> distinct(urls.begin(), urls.end());
  std::map<std::string, std::size_t> counts;
  for (const std::string& url : urls) {
    if (const std::optional<std::string> host = tabHost(url)) ++counts[*host];
  }
  Tabs tabs;
  tabs.duplicates = asInt(urls.size() - distinct.size());
  for (const auto& [host, count] : counts) {
    if (count >= fewestTabsOfPile) tabs.piles.emplace_back(host, asInt(count));
  }
  // The map is in the order of host names, and a stable sort keeps it among equal counts.
  std::stable_sort(tabs.piles.begin(), tabs.piles.end(),
                   [](const auto& a, const auto& b) { return a.second > b.second; });
  tabs.piles.resize(std::min(tabs.piles.size(), mostPiles));
  return tabs;
}

std::vector<std::string> urlsOfLines(std::string_view output) {
  std::vector<std::string> lines;
  while (!output.empty() && lines.size() < mostTabs) {
    const std::size_t end = std::min(output.find_first_of("\r\n"), output.size());
    if (end > 0) lines.emplace_back(output.substr(0, end));
    output.remove_prefix(std::min(end + 1, output.size()));
  }
  return lines;
}

std::string tabUrlsScript(std::string_view bundleID) {
  return "set text item delimiters to linefeed\n" + tellApplication(bundleID) +
         " to set urls to URL of every tab of every window\n"
         "return urls as text";
}

std::string closeDuplicatesScript(std::string_view bundleID) {
  return tellApplication(bundleID) + R"(
    set seen to {}
    repeat with w in windows
        try
            set extra to {}
            repeat with i from 1 to (count of tabs of w)
                set u to URL of tab i of w
                if seen contains {u} then
                    set end of extra to i
                else
                    set end of seen to u
                end if
            end repeat
            repeat with k from (count of extra) to 1 by -1
                close tab (item k of extra) of w
            end repeat
        end try
    end repeat
end tell)";
}

std::string openPageScript(std::string_view url, std::string_view bundleID) {
  return tellApplication(bundleID) + R"(
    activate
    make new tab at end of tabs of front window with properties {URL:")" +
         escaped(url) + R"("}
end tell)";
}

}  // namespace tarnwick
