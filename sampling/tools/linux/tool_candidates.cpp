// Where Linux distributions, Homebrew and the user's own bin folder keep the tools. There are no simulators.
#include "sampling/tools/tool_places.h"

namespace tarnwick {

ToolCandidates toolCandidates(const std::string& home) {
  ToolCandidates candidates;
  candidates.git = {"/usr/bin/git", "/usr/local/bin/git", "/bin/git", "/home/linuxbrew/.linuxbrew/bin/git",
                    "/run/current-system/sw/bin/git"};
  candidates.gh = {home + "/bin/gh",    "/usr/bin/gh",
                   "/usr/local/bin/gh", "/home/linuxbrew/.linuxbrew/bin/gh",
                   "/snap/bin/gh",      "/run/current-system/sw/bin/gh"};
  return candidates;
}

}  // namespace tarnwick
