// The three scalar types that every record shares.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace tarnwick {

// A moment: seconds since 1970 (UTC) as a double. Differences of two are `Seconds`.
using Seconds = std::chrono::duration<double>;
using Timestamp = std::chrono::sys_time<Seconds>;

// A process id. 0 and 1 belong to the system and are never a remedy's target: 0 would mean our own process
// group, 1 is the system's first process.
using Pid = std::int32_t;
inline constexpr Pid firstOrdinaryPid = 2;

// The timestamp that lies `seconds` after the start of 1970.
constexpr Timestamp timestamp(double seconds) { return Timestamp{Seconds{seconds}}; }

// Seconds since the start of 1970.
constexpr double seconds(Timestamp moment) { return moment.time_since_epoch().count(); }

// How long after `earlier` the moment `later` is, in seconds; negative when it is before.
constexpr double secondsBetween(Timestamp earlier, Timestamp later) { return (later - earlier).count(); }

// Who runs this program: read once at start, the same value everywhere.
struct Self {
  Pid pid = 0;
  std::uint32_t uid = 0;  // real user id
  std::string home;       // absolute path without a slash at its end
};

}  // namespace tarnwick
