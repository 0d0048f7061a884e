// "--watch": checks again and again and prints what changes.
#pragma once

#include "app/modes.h"

namespace tarnwick {

// Runs until the reader goes away or the program is told to end; the exit status, 1 when the pace is none or
// the machine cannot be seen at all.
int runWatch(const ProgramRun& run);

}  // namespace tarnwick
