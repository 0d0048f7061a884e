#include "sampling/decode/pressure.h"

#include "records/text.h"

namespace tarnwick {
namespace {

// A share as the kernel writes it, such as "12.50"; absent for anything else. By hand, because not every C++
// library reads numbers with a fraction without asking the locale; nor is a library of
// mathematics loaded for it.
std::optional<double> decimalShare(std::string_view text) {
  const std::size_t point = text.find('.');
  const auto whole = wholeNumber<std::uint32_t>(text.substr(0, point));
  if (!whole || point == std::string_view::npos) return whole;
  const std::string_view decimals = text.substr(point + 1);
  const auto fraction = wholeNumber<std::uint32_t>(decimals);
  if (!fraction) return std::nullopt;
  double scale = 1;
  for (std::size_t digit = 0; digit < decimals.size(); ++digit) scale *= 10;
  return *whole + *fraction / scale;
}

// The percentage after "avg10=" in the line of that kind.
std::optional<double> stallShare(std::string_view stalls, std::string_view kind) {
  constexpr std::string_view key = "avg10=";
  auto line = lineOf(stalls, kind);
  if (!line) return std::nullopt;
  std::string_view word = takeWord(*line);
  if (!word.starts_with(key)) return std::nullopt;
  return decimalShare(word.substr(key.size()));
}

}  // namespace

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

}  // namespace tarnwick
