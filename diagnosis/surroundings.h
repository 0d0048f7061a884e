// The few questions that rules may ask outside the snapshot. Answered by the live machine in production
// and by prepared answers in tests; an answer that cannot be had is the neutral value named here.
#pragma once

#include "records/basics.h"

namespace tarnwick {

// Used from the thread that runs the rules, one run at a time.
class Surroundings {
 public:
  virtual ~Surroundings() = default;

  // Who runs this program, and where their home is.
  virtual const Self& self() = 0;
};

}  // namespace tarnwick
