// The walls of the house, as checks over source text: who may include whom, where the operating system
// may be named, and that every source file belongs to a target.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// One sentence for every include in `text` that the file at `path` (relative to the root) may not have.
std::vector<std::string> forbiddenIncludes(std::string_view path, std::string_view text);

// One sentence for every preprocessor condition on the platform outside the operating systems' folders.
std::vector<std::string> platformConditions(std::string_view path, std::string_view text);

// Is `file` (relative to the folder of the list) a word of that CMakeLists.txt?
bool isNamed(std::string_view file, std::string_view cmakeLists);

}  // namespace tarnwick
