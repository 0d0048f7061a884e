// What somebody at the terminal answers. Main thread.
#pragma once

#include <optional>
#include <string>

namespace tarnwick {

// Is there somebody to ask: are standard input and standard output terminals?
bool canAsk();

// The next line of standard input without its line end and the blanks around it; absent at the end of input,
// also when that comes within a line. Of a line that is far too long only the beginning is kept.
std::optional<std::string> readAnswer();

}  // namespace tarnwick
