// Where macOS keeps the tools: Homebrew's folders, and the developer folder that the user selected.
#include <unistd.h>

#include <array>

#include "sampling/tools/tool_places.h"

namespace tarnwick {
namespace {

constexpr const char* commandLineTools = "/Library/Developer/CommandLineTools";

// The target of the link that stands for the user's choice, else the command line tools.
std::string selectedDeveloperDir() {
  std::array<char, 4096> target{};
  const ssize_t length = ::readlink("/var/db/xcode_select_link", target.data(), target.size());
  if (length <= 0) return commandLineTools;
  return {target.data(), static_cast<std::size_t>(length)};
}

}  // namespace

ToolCandidates toolCandidates(const std::string& home) {
  ToolCandidates candidates;
  candidates.developerDir = selectedDeveloperDir();
  candidates.git = {"/opt/homebrew/bin/git", "/usr/local/bin/git", candidates.developerDir + "/usr/bin/git",
                    std::string(commandLineTools) + "/usr/bin/git"};
  candidates.simctl = {candidates.developerDir + "/usr/bin/simctl"};
  candidates.gh = {home + "/bin/gh", "/opt/homebrew/bin/gh", "/usr/local/bin/gh"};
  return candidates;
}

}  // namespace tarnwick
