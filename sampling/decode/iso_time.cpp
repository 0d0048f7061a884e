#include "sampling/decode/iso_time.h"

#include <algorithm>
#include <chrono>
#include <cstddef>

namespace tarnwick {
namespace {

constexpr std::string_view digits = "0123456789";

// Is the text of this form? "0" stands for any digit, every other character for itself.
bool hasForm(std::string_view text, std::string_view form) {
  return std::equal(text.begin(), text.end(), form.begin(), form.end(), [](char actual, char expected) {
    return expected == '0' ? digits.find(actual) != std::string_view::npos : actual == expected;
  });
}

// Takes a decimal fraction such as ".345" off the front, however long; 0 when there is none. Absent for a
// mark without digits.
std::optional<double> takeFraction(std::string_view& text) {
  if (!text.starts_with('.') && !text.starts_with(',')) return 0;
  const std::size_t end = std::min(text.find_first_not_of(digits, 1), text.size());
  if (end == 1) return std::nullopt;
  double value = 0;
  double place = 0.1;
  for (const char digit : text.substr(1, end - 1)) {
    value += place * static_cast<double>(digit - '0');
    place /= 10;
  }
  text.remove_prefix(end);
  return value;
}

// The two digits at `at`, which are known to be there.
int pairAt(std::string_view text, std::size_t at) { return (text[at] - '0') * 10 + (text[at + 1] - '0'); }

// How far the zone is ahead of UTC; absent when it is none.
std::optional<std::chrono::minutes> zoneOffset(std::string_view zone) {
  if (zone == "Z") return std::chrono::minutes{0};
  if (!zone.starts_with('+') && !zone.starts_with('-')) return std::nullopt;
  const std::string_view clock = zone.substr(1);
  const bool hasMinutes = hasForm(clock, "00:00") || hasForm(clock, "0000");
  if (!hasMinutes && !hasForm(clock, "00")) return std::nullopt;
  const int hours = pairAt(zone, 1);
  const int minutes = hasMinutes ? pairAt(zone, zone.size() - 2) : 0;
  if (hours > 23 || minutes > 59) return std::nullopt;
  const std::chrono::minutes offset = std::chrono::hours{hours} + std::chrono::minutes{minutes};
  return zone.front() == '-' ? -offset : offset;
}

}  // namespace

std::optional<Timestamp> isoTime(std::string_view text) {
  using namespace std::chrono;
  constexpr std::string_view form = "0000-00-00T00:00:00";
  const std::string_view moment = text.substr(0, form.size());
  if (!hasForm(moment, form)) return std::nullopt;
  text.remove_prefix(form.size());
  const std::optional<double> fraction = takeFraction(text);
  const auto offset = zoneOffset(text);
  if (!fraction || !offset) return std::nullopt;

  const year_month_day date{year{pairAt(moment, 0) * 100 + pairAt(moment, 2)},
                            month{static_cast<unsigned>(pairAt(moment, 5))},
                            day{static_cast<unsigned>(pairAt(moment, 8))}};
  const int hour = pairAt(moment, 11);
  const int minute = pairAt(moment, 14);
  const int second = pairAt(moment, 17);
  if (!date.ok() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
  // Four digits of year and whole seconds cannot overflow; the fraction is added afterwards.
  const sys_seconds whole =
      sys_days{date} + hours{hour} + minutes{minute} + std::chrono::seconds{second} - *offset;
  return Timestamp{whole} + Seconds{*fraction};
}

}  // namespace tarnwick
