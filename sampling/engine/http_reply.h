// An HTTP/1.0 reply that was read to its end: status line, headers, a blank line, body. Takes bytes and
// never reads.
#pragma once

#include <optional>
#include <string_view>

namespace tarnwick {

// The bytes after the first blank line, a part of `reply`, when the status is 200 to 299 or 304 (the engine
// says 304 to stopping what has already stopped: done). Absent for every other status, for a reply cut in
// its headers or with more than 1 MiB of them, and for a status line whose second word is no number.
std::optional<std::string_view> successfulBody(std::string_view reply);

}  // namespace tarnwick
