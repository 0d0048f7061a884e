#include "system/environment.h"

#include <cstdlib>
#include <string_view>

extern "C" char** environ;

namespace tarnwick {
namespace {

// Absent unless it is an absolute path.
std::optional<std::string> absolutePath(const char* name) {
  auto path = environmentVariable(name);
  return path && path->starts_with('/') ? path : std::nullopt;
}

void addFolder(std::vector<std::string>& folders, std::string_view folder) {
  while (folder.size() > 1 && folder.ends_with('/')) folder.remove_suffix(1);
  if (folder.starts_with('/')) folders.emplace_back(folder);
}

// LC_ALL is stronger than the one for the purpose, LANG is weaker.
std::string localeFor(const char* purpose) {
  for (const char* name : {"LC_ALL", purpose, "LANG"}) {
    auto value = environmentVariable(name);
    if (value && !value->empty()) return *value;
  }
  return {};
}

}  // namespace

std::optional<std::string> environmentVariable(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr) return std::nullopt;
  return value;
}

std::vector<std::string> environmentVariables() {
  std::vector<std::string> variables;
  for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable) {
    variables.emplace_back(*variable);
  }
  return variables;
}

bool toolsAreOff() { return std::getenv("TARNWICK_NO_TOOLS") != nullptr; }

std::string configFolder(const std::string& home) {
  return absolutePath("XDG_CONFIG_HOME").value_or(home + "/.config");
}

std::string runtimeFolder(std::uint32_t uid) {
  return absolutePath("XDG_RUNTIME_DIR").value_or("/run/user/" + std::to_string(uid));
}

std::vector<std::string> dataFolders(const std::string& home) {
  std::vector<std::string> folders;
  addFolder(folders, absolutePath("XDG_DATA_HOME").value_or(home + "/.local/share"));
  const std::string named = environmentVariable("XDG_DATA_DIRS").value_or("");
  std::string_view rest = named.empty() ? "/usr/local/share:/usr/share" : std::string_view(named);
  while (!rest.empty()) {
    const auto colon = rest.find(':');
    addFolder(folders, rest.substr(0, colon));
    rest.remove_prefix(colon == std::string_view::npos ? rest.size() : colon + 1);
  }
  return folders;
}

std::string messageLocale() { return localeFor("LC_MESSAGES"); }

std::string dateLocale() { return localeFor("LC_TIME"); }

}  // namespace tarnwick
