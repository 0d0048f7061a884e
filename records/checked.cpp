#include "records/checked.h"

#include <cstdio>
#include <cstdlib>

namespace tarnwick {

void fault(std::string_view reason) {
  std::fprintf(stderr, "tarnwick: fault: %.*s\n", static_cast<int>(reason.size()), reason.data());
  std::abort();
}

}  // namespace tarnwick
