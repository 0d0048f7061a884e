// Small files of the user's configuration: read whole, replaced at once.
#pragma once

#include <string>

namespace tarnwick {

// At most 64 KiB of a plain file; empty when it is absent, larger, or no plain file.
std::string readConfigFile(const std::string& path);

// Makes the folder, then swaps the new file in, so that nobody reads half of it. False: nothing changed.
bool replaceConfigFile(const std::string& path, const std::string& text);

}  // namespace tarnwick
