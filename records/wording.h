// How sizes, durations, counts, lists and processor shares read, everywhere. Pure functions; numbers are
// formatted with a point, whatever the user's locale.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "records/snapshot.h"

namespace tarnwick {

// Bytes in binary gigabytes ("250 GB", "1.5 GB") or whole binary megabytes, rounded down ("512 MB").
std::string size(std::uint64_t bytes);

// A duration in its largest fitting unit, truncated: "59 seconds", "47 hours", "2 days". Callers add
// "ago". A value that is not finite or beyond 64 bits is a fault.
std::string ago(double seconds);

// "1 tab", "3 tabs", "2 processes".
std::string plural(std::int64_t n, std::string_view word);

// "", "a", "a and b", "a, b, and c".
std::string list(const std::vector<std::string>& items);

// `cpu` cores as a share of the whole machine: "50% CPU". Halves round away from zero; a share that is
// not finite is a fault.
std::string pct(double cpu, const Snapshot& snapshot);

// A share as a whole percentage, halves away from zero: 0.125 gives "13". Not finite is a fault.
std::string wholePercent(double share);

}  // namespace tarnwick
