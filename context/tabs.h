// Open browser tabs, the part that is the same on every system: what many addresses say about a browser, and
// the scripts. Pure; addresses may be hostile.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "records/snapshot.h"

namespace tarnwick {

// The code's bytes as one number, the first byte highest.
constexpr std::uint32_t fourCharCode(std::string_view code) {
  std::uint32_t value = 0;
  for (const char byte : code) value = value * 256U + static_cast<unsigned char>(byte);
  return value;
}

// Repeated addresses and the three hosts with the most tabs, of those with at least three tabs.
Tabs condense(const std::vector<std::string>& urls);

// The host of an address, without user, password, port and a leading "www."; its letter case and percent
// encoding stay, an IPv6 address loses its brackets. Absent for an address that is malformed or has none.
std::optional<std::string> tabHost(std::string_view url);

// What `tabUrlsScript` printed, as addresses: its lines without the empty ones.
std::vector<std::string> urlsOfLines(std::string_view output);

// AppleScript that prints the address of every tab, one a line.
std::string tabUrlsScript(std::string_view bundleID);

// AppleScript that closes every tab whose address an earlier tab shows, windows in their order.
std::string closeDuplicatesScript(std::string_view bundleID);

// AppleScript that opens a page in a new tab of the front window.
std::string openPageScript(std::string_view url, std::string_view bundleID);

}  // namespace tarnwick
