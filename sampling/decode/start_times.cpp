#include "sampling/decode/start_times.h"

#include <limits>

#include "records/text.h"

namespace tarnwick {

std::optional<std::int64_t> bootTime(std::string_view stat) {
  auto line = lineOf(stat, "btime");
  if (!line) return std::nullopt;
  const auto moment = wholeNumber<std::int64_t>(takeWord(*line));
  return moment && *moment > 0 && takeWord(*line).empty() ? moment : std::nullopt;
}

std::optional<std::int64_t> startSeconds(std::uint64_t startTicks, const ProcClock& clock) {
  if (clock.bootTime < 0 || clock.ticksPerSecond == 0) return std::nullopt;
  const std::uint64_t age = startTicks / clock.ticksPerSecond;
  if (age > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max() - clock.bootTime)) {
    return std::nullopt;
  }
  return clock.bootTime + static_cast<std::int64_t>(age);
}

}  // namespace tarnwick
