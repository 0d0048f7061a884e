// Arithmetic that stops the program instead of wrapping, and the way it stops.
#pragma once

#include <cstdint>
#include <string_view>

namespace tarnwick {

// Ends the process at once, in release builds too, after one line on standard error. Only for
// programming errors: nothing that comes from outside may lead here.
[[noreturn]] void fault(std::string_view reason);

// Sum of two byte counts; overflow is a fault.
std::uint64_t checkedAdd(std::uint64_t a, std::uint64_t b);

}  // namespace tarnwick
