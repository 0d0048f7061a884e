// Small files and folder marks as readers of other programs' state need them: bounded in memory, and never
// stuck. Only regular files are read: a pipe, device or socket under an expected name counts as unreadable.
// Links are followed. Bytes and names come back as they are, not repaired to UTF-8. Nothing fails loudly:
// what cannot be read is absent, false or empty. Any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

// The whole file; absent when it holds more than `maxBytes`.
std::optional<std::string> readSmallFile(const std::string& path, std::size_t maxBytes);

// The first `bytes` bytes, or the whole file when it is smaller.
std::optional<std::string> readFileHead(const std::string& path, std::size_t bytes);

// The last `bytes` bytes, or the whole file when it is smaller.
std::optional<std::string> readFileTail(const std::string& path, std::size_t bytes);

// A link that points nowhere does not exist.
bool pathExists(const std::string& path);
bool isDirectory(const std::string& path);
bool isRegularFile(const std::string& path);

// Does it belong to the user who runs this program? Permissions do not count.
bool isOwn(const std::string& path);

// A regular file that this user may execute.
bool isExecutableFile(const std::string& path);

// The names in a folder in the folder's own listing order, without "." and "..", the first
// `mostFolderEntries`.
std::vector<std::string> folderEntries(const std::string& path);

}  // namespace tarnwick
