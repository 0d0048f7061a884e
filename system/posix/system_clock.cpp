#include "system/clock.h"

#include <time.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>

#include "system/posix/differences.h"

namespace tarnwick {
namespace {

constexpr double nanosecondsPerSecond = 1e9;
constexpr double longestSleep = 1e9;  // seconds, about 30 years: fits every time_t

double read(clockid_t clock) {
  timespec moment = {};
  if (clock_gettime(clock, &moment) != 0) return 0;
  return static_cast<double>(moment.tv_sec) + static_cast<double>(moment.tv_nsec) / nanosecondsPerSecond;
}

}  // namespace

std::string localTime(Timestamp moment) {
  const auto whole = static_cast<time_t>(std::floor(seconds(moment)));
  tm parts = {};
  if (localtime_r(&whole, &parts) == nullptr) return "?";
  std::array<char, 64> text{};
  return {text.data(), strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts)};
}

Timestamp SystemClock::now() { return timestamp(read(CLOCK_REALTIME)); }

double SystemClock::uptime() { return read(awakeClock()); }

void SystemClock::sleep(double seconds) {
  if (!(seconds > 0)) return;  // not a number is not positive either
  const double whole = std::floor(std::min(seconds, longestSleep));
  const double part = std::min(seconds, longestSleep) - whole;
  timespec left = {};
  left.tv_sec = static_cast<time_t>(whole);
  left.tv_nsec = static_cast<long>(part * nanosecondsPerSecond);
  // A signal ends the call early and leaves what is left of the time in `left`.
  while (nanosleep(&left, &left) != 0 && errno == EINTR) {
  }
}

}  // namespace tarnwick
