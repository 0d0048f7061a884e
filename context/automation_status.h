// The status with which macOS answers whether this program may automate another one.
#pragma once

#include <cstdint>

#include "records/snapshot.h"

namespace tarnwick {

// Everything that is no clear answer, such as that the other program does not run, is unknown.
constexpr Access accessFromStatus(std::int32_t status) {
  constexpr std::int32_t notPermitted = -1743;
  constexpr std::int32_t wouldRequireConsent = -1744;
  if (status == 0) return Access::allowed;
  if (status == notPermitted) return Access::denied;
  return status == wouldRequireConsent ? Access::notAsked : Access::unknown;
}

}  // namespace tarnwick
