// Runs one mode of the program from start to end.
#pragma once

#include "app/cli/command_line.h"

namespace tarnwick {

// The result is the process's exit status. Main thread.
int run(const CommandLine& commandLine);

}  // namespace tarnwick
