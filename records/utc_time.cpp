#include "records/utc_time.h"

#include <algorithm>
#include <chrono>
#include <cstdint>

#include "records/formatted.h"

namespace tarnwick {
namespace {

constexpr double earliest = -62'167'219'200;  // the first second of year 0
constexpr double latest = 253'402'300'799;    // the last one of year 9999

std::int64_t wholeSeconds(double value) {
  if (!(value > earliest)) return static_cast<std::int64_t>(earliest);  // not a number, too
  const double inside = std::min(value, latest);
  const auto truncated = static_cast<std::int64_t>(inside);
  return static_cast<double>(truncated) > inside ? truncated - 1 : truncated;
}

}  // namespace

std::string utcTime(Timestamp moment) {
  const std::chrono::sys_seconds whole{std::chrono::seconds{wholeSeconds(seconds(moment))}};
  const auto midnight = std::chrono::floor<std::chrono::days>(whole);
  const std::chrono::year_month_day date{midnight};
  const std::chrono::hh_mm_ss time{whole - midnight};
  return formatted("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", static_cast<int>(date.year()),
                   static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                   time.hours().count(), time.minutes().count(), time.seconds().count());
}

}  // namespace tarnwick
