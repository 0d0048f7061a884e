// The kernel's record about one process: whose it is, its parent, its start. Any thread.
#pragma once

#include <sys/proc_info.h>

#include <optional>

#include "records/basics.h"

namespace tarnwick {

// Absent when the process is gone or cannot be read.
std::optional<proc_bsdinfo> processRecord(Pid pid);

}  // namespace tarnwick
