// The files of this tree, as the checks over source text see them.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace tarnwick {

inline const std::filesystem::path sourceRoot = TARNWICK_SOURCE_DIR;
inline const std::vector<std::string> sourceFolders{"records", "system", "diagnosis", "sampling",
                                                    "context", "app",    "bench",     "tests"};

// Every file of the tree with one of those endings, relative to the root.
inline std::vector<std::string> filesEndingIn(const std::vector<std::string>& endings) {
  std::vector<std::string> files;
  for (const std::string& folder : sourceFolders) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(sourceRoot / folder)) {
      if (std::ranges::find(endings, entry.path().extension().string()) == endings.end()) continue;
      files.push_back(std::filesystem::relative(entry.path(), sourceRoot));
    }
  }
  return files;
}

}  // namespace tarnwick
