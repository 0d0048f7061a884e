// "--fix": remedies from the command line, along the road that the panel's buttons take.
#pragma once

#include "app/modes.h"

namespace tarnwick {

// Checks this machine and carries out the remedy of the command in the words, or lets the user choose until
// they leave. Nothing is done that was not shown, nor without a yes. The exit status: 1 when the remedy that
// was named is not there or was not carried out, and where nobody can be asked.
int runFix(const ProgramRun& run);

}  // namespace tarnwick
