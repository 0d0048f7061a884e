#include "records/wording.h"

#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <span>

#include "records/checked.h"
#include "records/formatted.h"

namespace tarnwick {
namespace {

constexpr double bytesPerGigabyte = 1024.0 * 1024.0 * 1024.0;
constexpr double minute = 60;
constexpr double hour = 3'600;
constexpr double day = 86'400;

std::int64_t truncated(double value) {
  constexpr double limit = 9'223'372'036'854'775'808.0;  // 2^63, exactly
  if (!(value >= -limit && value < limit)) fault("a duration does not fit 64 bits");
  return static_cast<std::int64_t>(value);
}

// As std::round does it, halves away from zero, but without the library of mathematics, which the program
// would load for this alone.
double rounded(double value) {
  constexpr double allWhole = 4'503'599'627'370'496.0;  // 2^52: from there on every number is whole
  if (!(value > -allWhole && value < allWhole)) return value;
  const auto whole = static_cast<double>(static_cast<std::int64_t>(value));
  const double rest = value - whole;  // exactly
  if (rest > -0.5 && rest < 0.5) return whole;
  return rest < 0 ? whole - 1 : whole + 1;
}

}  // namespace

std::string size(std::uint64_t bytes) {
  const double gigabytes = static_cast<double>(bytes) / bytesPerGigabyte;
  if (gigabytes >= 100) return formatted("{:.0f} GB", gigabytes);
  if (gigabytes >= 1) return formatted("{:.1f} GB", gigabytes);
  return formatted("{} MB", bytes >> 20U);
}

std::string ago(double seconds) {
  if (!std::isfinite(seconds)) fault("a duration is not finite");
  if (seconds < minute) return plural(truncated(seconds), "second");
  if (seconds < hour) return plural(truncated(seconds / minute), "minute");
  if (seconds < 2 * day) return plural(truncated(seconds / hour), "hour");
  return plural(truncated(seconds / day), "day");
}

std::string plural(std::int64_t n, std::string_view word) {
  const char* ending = n == 1 ? "" : word.ends_with('s') ? "es" : "s";
  return formatted("{} {}{}", n, word, ending);
}

std::string list(const std::vector<std::string>& items) {
  if (items.empty()) return {};
  if (items.size() == 1) return items.front();
  if (items.size() == 2) return items.front() + " and " + items.back();
  return formatted("{}, and {}", fmt::join(std::span(items).first(items.size() - 1), ", "), items.back());
}

std::string pct(double cpu, const Snapshot& snapshot) {
  return wholePercent(cpu / std::max(snapshot.cores, 1)) + "% CPU";
}

std::string wholePercent(double share) {
  const double percent = rounded(share * 100);
  if (!std::isfinite(percent)) fault("a percentage is not finite");
  return formatted("{:.0f}", percent + 0.0);  // + 0.0 turns a negative zero into zero
}

}  // namespace tarnwick
