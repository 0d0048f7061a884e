#include "sampling/decode/machine_text.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "records/text.h"

namespace tarnwick {
namespace {

// The line whose first word is `key`, without that word.
std::optional<std::string_view> lineOf(std::string_view text, std::string_view key) {
  while (!text.empty()) {
    std::string_view line = takeLine(text);
    if (takeWord(line) == key) return line;
  }
  return std::nullopt;
}

bool addFits(std::uint64_t& sum, std::uint64_t value) {
  if (value > std::numeric_limits<std::uint64_t>::max() - sum) return false;
  sum += value;
  return true;
}

std::optional<std::uint64_t> kilobytes(std::string_view meminfo, std::string_view key) {
  auto line = lineOf(meminfo, key);
  if (!line) return std::nullopt;
  const auto count = wholeNumber<std::uint64_t>(takeWord(*line));
  if (!count || takeWord(*line) != "kB") return std::nullopt;
  if (*count > std::numeric_limits<std::uint64_t>::max() / 1024) return std::nullopt;
  return *count * 1024;
}

// The percentage after "avg10=" in the line of that kind.
std::optional<double> stallShare(std::string_view stalls, std::string_view kind) {
  constexpr std::string_view key = "avg10=";
  auto line = lineOf(stalls, kind);
  if (!line) return std::nullopt;
  std::string_view word = takeWord(*line);
  if (!word.starts_with(key)) return std::nullopt;
  const auto share = wholeNumber<double>(word.substr(key.size()));
  if (!share || !std::isfinite(*share) || *share < 0) return std::nullopt;
  return share;
}

void takeLower(std::optional<std::int64_t>& limit, std::int64_t temperature) {
  limit = std::min(limit.value_or(temperature), temperature);
}

bool counts(const ThermalZone& zone) {
  return zone.temperature && *zone.temperature > 0 && (zone.passive || zone.critical);
}

ThermalState stateOf(const ThermalZone& zone) {
  if (zone.critical && *zone.temperature >= *zone.critical) return ThermalState::critical;
  if (!zone.passive) return ThermalState::nominal;
  if (*zone.temperature >= *zone.passive) return ThermalState::serious;
  // Both are positive here, so the difference cannot overflow.
  return *zone.passive - *zone.temperature <= fairMargin ? ThermalState::fair : ThermalState::nominal;
}

std::optional<std::int64_t> product(std::uint64_t count, std::uint64_t size) {
  constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (size != 0 && count > most / size) return std::nullopt;
  return static_cast<std::int64_t>(count * size);
}

}  // namespace

CpuTicks cpuTicksFromStat(std::string_view stat) {
  // user nice system idle iowait irq softirq steal. The two guest columns that follow are already in user
  // and nice: reading them too would count a virtual machine's work twice.
  constexpr std::size_t columns = 8;
  constexpr std::size_t idleColumn = 3;
  constexpr std::size_t waitColumn = 4;
  auto line = lineOf(stat, "cpu");
  if (!line) return {};
  CpuTicks ticks;
  for (std::size_t column = 0; column < columns; ++column) {
    const std::string_view word = takeWord(*line);
    if (word.empty() && column > idleColumn) break;  // old kernels have fewer columns
    const auto value = wholeNumber<std::uint64_t>(word);
    if (!value || !addFits(ticks.total, *value)) return {};
    if (column != idleColumn && column != waitColumn) ticks.busy += *value;
  }
  return ticks;
}

std::optional<std::int64_t> bootTimeFromStat(std::string_view stat) {
  const auto line = lineOf(stat, "btime");
  if (!line) return std::nullopt;
  const auto moment = numberAlone(*line);
  return moment && *moment > 0 ? moment : std::nullopt;
}

MemoryInfo memoryInfo(std::string_view meminfo) {
  return {.total = kilobytes(meminfo, "MemTotal:"),
          .available = kilobytes(meminfo, "MemAvailable:"),
          .swapTotal = kilobytes(meminfo, "SwapTotal:"),
          .swapFree = kilobytes(meminfo, "SwapFree:")};
}

std::uint64_t swapUsed(const MemoryInfo& memory) {
  if (!memory.swapTotal || !memory.swapFree || *memory.swapFree > *memory.swapTotal) return 0;
  return *memory.swapTotal - *memory.swapFree;
}

std::optional<std::int32_t> pressureFromStalls(std::string_view stalls) {
  const auto full = stallShare(stalls, "full");
  const auto some = stallShare(stalls, "some");
  if (!full && !some) return std::nullopt;
  if (full && *full >= fullStallCritical) return 4;
  if (some && *some >= someStallWarning) return 2;
  return 1;
}

std::optional<std::int32_t> pressureFromAvailable(const MemoryInfo& memory) {
  if (!memory.total || *memory.total == 0 || !memory.available) return std::nullopt;
  const double share = static_cast<double>(*memory.available) / static_cast<double>(*memory.total);
  if (share < availableCritical) return 4;
  return share < availableWarning ? 2 : 1;
}

std::optional<std::int64_t> numberAlone(std::string_view text) {
  std::string_view line = takeLine(text);
  const auto value = wholeNumber<std::int64_t>(takeWord(line));
  return takeWord(line).empty() && text.empty() ? value : std::nullopt;
}

void addTripPoint(ThermalZone& zone, std::string_view type, std::optional<std::int64_t> temperature) {
  if (!temperature || *temperature <= 0) return;
  std::string_view line = takeLine(type);
  const std::string_view kind = takeWord(line);
  if (kind == "critical" || kind == "hot") takeLower(zone.critical, *temperature);
  if (kind == "passive") takeLower(zone.passive, *temperature);
}

ThermalState thermalState(const std::vector<ThermalZone>& zones) {
  std::int64_t hottest = 0;
  ThermalState state = ThermalState::nominal;
  for (const ThermalZone& zone : zones) {
    if (!counts(zone) || *zone.temperature < hottest) continue;
    const ThermalState own = stateOf(zone);
    state = *zone.temperature == hottest ? std::max(state, own) : own;
    hottest = *zone.temperature;
  }
  return state;
}

DiskSpace diskSpace(std::uint64_t availableBlocks, std::uint64_t blocks, std::uint64_t blockSize) {
  const auto free = product(availableBlocks, blockSize);
  const auto total = product(blocks, blockSize);
  if (!free || !total) return {};
  return {.free = *free, .total = *total};
}

}  // namespace tarnwick
