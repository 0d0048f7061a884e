// Sums that cannot wrap, and the way a programming error stops the program.
#pragma once

#include <cstdint>
#include <limits>
#include <string_view>

namespace tarnwick {

// Ends the process at once, in release builds too, after one line on standard error. Only for
// programming errors: nothing that comes from outside may lead here.
[[noreturn]] void fault(std::string_view reason);

// Sum of two figures from outside, the largest number where it does not fit.
constexpr std::uint64_t saturatingAdd(std::uint64_t a, std::uint64_t b) {
  constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
  return b > most - a ? most : a + b;
}

}  // namespace tarnwick
