// Every question that the program asks of its environment: folders by the XDG base-directory rules, the
// user's locale, whether tools are off. Read anew at each question. Any thread, as long as none changes the
// environment, which this program never does.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

// Absent when it is not set; set to nothing it is the empty text.
std::optional<std::string> environmentVariable(const char* name);

// All of them, as "NAME=value".
std::vector<std::string> environmentVariables();

// TARNWICK_NO_TOOLS, whatever its value, turns every outside tool off.
bool toolsAreOff();

// The user's folders. `home` is the home folder; a variable that is no absolute path counts as not set.
std::string configFolder(const std::string& home);  // $XDG_CONFIG_HOME, else ~/.config
std::string runtimeFolder(std::uint32_t uid);       // $XDG_RUNTIME_DIR, else the system's usual place
std::vector<std::string> dataFolders(const std::string& home);  // $XDG_DATA_HOME, $XDG_DATA_DIRS; best first

// What the user speaks in texts and in dates, such as "de_AT.UTF-8"; empty when nothing is chosen.
std::string messageLocale();
std::string dateLocale();

}  // namespace tarnwick
