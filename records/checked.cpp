#include "records/checked.h"

#include <cstdio>
#include <cstdlib>
#include <limits>

namespace tarnwick {

void fault(std::string_view reason) {
  std::fprintf(stderr, "tarnwick: fault: %.*s\n", static_cast<int>(reason.size()), reason.data());
  std::abort();
}

std::uint64_t checkedAdd(std::uint64_t a, std::uint64_t b) {
  if (b > std::numeric_limits<std::uint64_t>::max() - a) fault("a sum of byte counts overflows");
  return a + b;
}

}  // namespace tarnwick
