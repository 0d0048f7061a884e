// Asks the on-device language model through a short-lived child, so that this program never has to hold it.
#pragma once

#include <string>

#include "sampling/tools/tool_runner.h"

namespace tarnwick {

// So long may the child take, in seconds: the model may have to be loaded first.
inline constexpr double explainSeconds = 60;

// What `executable` (this program) prints when it is asked to explain the evidence; valid UTF-8, empty when
// it has no answer. Blocks until the child has ended. Any thread.
std::string explainByChild(ToolRunner& tools, const std::string& executable, const std::string& evidence);

}  // namespace tarnwick
