#include "diagnosis/process_kinds.h"

#include <algorithm>
#include <array>
#include <span>

#include "records/limits.h"
#include "records/utf8.h"

namespace tarnwick {
namespace {

struct Kind {
  std::array<std::string_view, 6> words;  // unused places are empty
  std::string_view label;
};

// The first row with a word that the text contains wins.
constexpr std::array<Kind, 3> workKinds{{
    {{"test", "pytest", "jest", "vitest", "rspec"}, "tests"},
    {{"build", "compile", "tsc", "webpack"}, "a build"},
    {{"install", "uv sync", "bundle"}, "a package install"},
}};

// The first row wins: a name with both "mysql" and "mariadb" is MySQL.
constexpr std::array<Kind, 5> databaseKinds{{
    {{"postgres"}, "Postgres"},
    {{"mysql"}, "MySQL"},
    {{"mariadb"}, "MariaDB"},
    {{"redis"}, "Redis"},
    {{"mongo"}, "MongoDB"},
}};

// The tool must be one of the words.
constexpr std::array<Kind, 5> serverKinds{{
    {{"next-server", "next"}, "Next.js web app"},
    {{"uvicorn", "gunicorn", "hypercorn", "daphne", "flask", "fastapi"}, "Python API"},
    {{"vite"}, "Vite dev server"},
    {{"webpack", "webpack-dev-server"}, "webpack dev server"},
    {{"rails", "puma"}, "Rails app"},
}};

constexpr std::array<std::string_view, 3> javaScriptRuntimes{"node", "bun", "deno"};
constexpr std::array<std::string_view, 3> otherRuntimes{"python", "python3", "ruby"};

template <class Words>
bool isOneOf(std::string_view word, const Words& words) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

// Program names and keywords are ASCII; other letters stay as they are.
std::string lowerCased(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

std::optional<std::string_view> firstContained(std::string_view text, std::span<const Kind> kinds) {
  const std::string lower = lowerCased(text);
  for (const Kind& kind : kinds) {
    for (const std::string_view word : kind.words) {
      if (!word.empty() && lower.find(word) != std::string::npos) return kind.label;
    }
  }
  return std::nullopt;
}

std::string_view firstWord(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  return text.substr(0, text.find(' '));
}

// The program that does the serving: the module or script that a runtime was started with, else the
// process itself. `name` is the process's name in lower case.
std::string_view serverTool(const Proc& proc, std::string_view name) {
  std::span<const std::string> rest(proc.args);
  if (!rest.empty()) rest = rest.subspan(1);
  const auto module = std::find(rest.begin(), rest.end(), "-m");
  if (module != rest.end() && module + 1 != rest.end()) return *(module + 1);
  if (isOneOf(name, javaScriptRuntimes) || isOneOf(name, otherRuntimes)) {
    const auto script =
        std::find_if(rest.begin(), rest.end(), [](const std::string& arg) { return !arg.starts_with('-'); });
    if (script != rest.end()) return lastPathComponent(*script);
  }
  return firstWord(proc.name());
}

}  // namespace

std::optional<std::string_view> workKind(std::string_view commandLine) {
  return firstContained(commandLine, workKinds);
}

std::string_view dbKind(std::string_view text) {
  return firstContained(text, databaseKinds).value_or("container");
}

std::string serverKind(const Proc& proc) {
  const std::string name = lowerCased(proc.name());
  const std::string_view tool = serverTool(proc, name);
  const std::string lowerTool = lowerCased(tool);
  for (const Kind& kind : serverKinds) {
    if (!lowerTool.empty() && isOneOf(lowerTool, kind.words)) return std::string(kind.label);
  }
  if (name.starts_with("python")) return "Python server";
  if (isOneOf(name, javaScriptRuntimes)) return "Node server";
  return repairUtf8(tool, longestServerTool) + " server";
}

}  // namespace tarnwick
