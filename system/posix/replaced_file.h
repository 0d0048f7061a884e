// Files that are changed whole or not at all. Links stay links: what they lead to is changed. False where it
// could not be done; then everything is as it was. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// Writes a new file beside the old one, then gives it the old one's name and permissions, so that nobody
// reads half of it. Where the folder takes no new file, the old one is written over. Only regular files, and
// those that the user may write, are replaced.
bool replaceFile(const std::string& path, std::string_view bytes);

// Writes into what stands there, such as a pipe or a device.
bool writeInto(const std::string& path, std::string_view bytes);

bool removeFile(const std::string& path);

// With the folders above it; true when it is there already.
bool makeFolder(const std::string& path);

}  // namespace tarnwick
