#include "sampling/decode/thermal_zone.h"

#include <algorithm>

#include "records/text.h"

namespace tarnwick {
namespace {

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

}  // namespace

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
  ThermalState worst = ThermalState::nominal;
  for (const ThermalZone& zone : zones) {
    if (counts(zone)) worst = std::max(worst, stateOf(zone));
  }
  return worst;
}

}  // namespace tarnwick
