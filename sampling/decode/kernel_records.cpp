#include "sampling/decode/kernel_records.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>

#include "records/utf8.h"

namespace tarnwick {

std::string textInField(std::string_view field) { return repairUtf8(field.substr(0, field.find('\0'))); }

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

std::optional<std::uint64_t> sumOfTimes(std::uint64_t user, std::uint64_t system) {
  if (user > std::numeric_limits<std::uint64_t>::max() - system) return std::nullopt;
  return user + system;
}

std::int64_t bytesInBlocks(std::uint64_t blocks, std::uint64_t blockBytes) {
  constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
  if (blockBytes != 0 && blocks > most / blockBytes) return std::numeric_limits<std::int64_t>::max();
  return static_cast<std::int64_t>(blocks * blockBytes);
}

}  // namespace tarnwick
