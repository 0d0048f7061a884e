// Small files of the user's configuration: read whole, replaced at once, through whoever may ask the home
// folder.
#pragma once

#include <optional>
#include <string>

#include "system/files.h"

namespace tarnwick {

// At most 64 KiB of a plain file; empty when it is absent, larger, or no plain file. Absent when nobody
// answered: what the file holds is not known then.
std::optional<std::string> readConfigFile(Files& files, const std::string& path);

// Makes the folder, then swaps the new file in, so that nobody reads half of it. False: nothing changed.
bool replaceConfigFile(Files& files, const std::string& path, const std::string& text);

}  // namespace tarnwick
