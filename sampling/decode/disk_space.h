// Space on a volume, from the kernel's counts of blocks.
#pragma once

#include <cstdint>
#include <limits>

namespace tarnwick {

struct DiskSpace {
  std::int64_t free = 0;   // bytes this user can still write
  std::int64_t total = 0;  // bytes
};

// Zeros when a product does not fit.
constexpr DiskSpace diskSpace(std::uint64_t availableBlocks, std::uint64_t blocks, std::uint64_t blockBytes) {
  constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
  const auto fits = [&](std::uint64_t count) { return blockBytes == 0 || count <= most / blockBytes; };
  if (!fits(availableBlocks) || !fits(blocks)) return {};
  return {.free = static_cast<std::int64_t>(availableBlocks * blockBytes),
          .total = static_cast<std::int64_t>(blocks * blockBytes)};
}

}  // namespace tarnwick
