// What a command that starts an application really starts: through launchers such as `env`, and through shell
// scripts that only prepare something. Takes text, never reads; what it cannot tell is absent or empty.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// The words of a desktop entry's command, without its quotes and without the codes for files (%U).
std::vector<std::string> commandWords(std::string_view command);

// One of them is not empty, unless the command starts nothing.
struct Launch {
  std::string program;  // a path, or a name to look for
  std::string snap;     // a snap's name
  std::string flatpak;  // a flatpak's id

  bool operator==(const Launch&) const = default;
};

// What the words start, behind all launchers.
Launch launchOf(std::vector<std::string> words);

// Programs that run other people's programs, by the name of their file: python3.11, java, electron and
// others.
bool isSharedRuntime(std::string_view fileName);

// The programs that the shell script at `path` hands its arguments on to, in its order. Variables that
// it sets itself and its own place are filled in; what needs more than that is left out.
std::vector<std::string> programsOfScript(std::string_view text, const std::string& path);

}  // namespace tarnwick
