#include "sampling/decode/listeners.h"

#include <algorithm>
#include <array>
#include <bit>

#include "records/text.h"

namespace tarnwick {
namespace {

// One line of net/tcp or net/tcp6, such as
// "  0: 0100007F:1F90 00000000:0000 0A 00000000:00000000 00:00000000 00000000  1000        0 4711 1 ...".
std::optional<Listener> listenerOfLine(std::string_view line) {
  constexpr std::string_view listening = "0A";
  std::array<std::string_view, 10> words;
  for (auto& word : words) word = takeWord(line);
  if (words[3] != listening) return std::nullopt;
  const auto colon = words[1].rfind(':');
  if (colon == std::string_view::npos) return std::nullopt;
  const auto port = wholeNumber<std::uint16_t>(words[1].substr(colon + 1), 16);
  const auto inode = wholeNumber<std::uint64_t>(words[9]);
  if (!port || !inode) return std::nullopt;
  return Listener{*inode, *port};
}

}  // namespace

std::optional<std::uint64_t> socketInode(std::string_view target) {
  constexpr std::string_view opening = "socket:[";
  if (!target.starts_with(opening) || !target.ends_with(']')) return std::nullopt;
  target.remove_prefix(opening.size());
  target.remove_suffix(1);
  return wholeNumber<std::uint64_t>(target);
}

std::vector<Listener> tcpListeners(std::string_view text) {
  std::vector<Listener> listeners;
  while (!text.empty()) {
    if (const auto listener = listenerOfLine(takeLine(text))) listeners.push_back(*listener);
  }
  return listeners;
}

std::uint16_t portInNetworkOrder(std::int32_t field) {
  // The kernel copies a 16-bit port into the wider field, so its two bytes keep their order in the low half.
  const auto bytes = std::bit_cast<std::array<std::uint8_t, 2>>(static_cast<std::uint16_t>(field));
  return static_cast<std::uint16_t>(bytes[0] * 256U + bytes[1]);
}

std::vector<std::uint16_t> eachPortOnce(std::vector<std::uint16_t> ports) {
  std::ranges::sort(ports);
  ports.erase(std::unique(ports.begin(), ports.end()), ports.end());
  return ports;
}

}  // namespace tarnwick
