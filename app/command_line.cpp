#include "app/command_line.h"

#include <algorithm>
#include <string_view>

namespace tarnwick {
namespace {

bool contains(const std::vector<std::string>& words, std::string_view word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

// The word right after the first `option`; absent when the option is missing or last.
std::optional<std::string> valueOf(const std::vector<std::string>& words, std::string_view option) {
  const auto found = std::find(words.begin(), words.end(), option);
  if (found == words.end() || std::next(found) == words.end()) return std::nullopt;
  return *std::next(found);
}

Mode modeOf(const std::vector<std::string>& words) {
  if (contains(words, "--selftest")) return Mode::selfTest;
  if (valueOf(words, "--explain")) return Mode::explain;
  if (contains(words, "--demo")) return Mode::demo;
  if (contains(words, "--bench")) return Mode::bench;
  if (contains(words, "--print")) return Mode::print;
  if (valueOf(words, "--snapshot")) return Mode::snapshot;
  if (contains(words, "--help")) return Mode::help;
  if (contains(words, "--version")) return Mode::version;
  return Mode::application;
}

}  // namespace

CommandLine parseCommandLine(const std::vector<std::string>& words) {
  return {.mode = modeOf(words),
          .scenario = valueOf(words, "--scenario"),
          .evidence = valueOf(words, "--explain").value_or(""),
          .imagePath = valueOf(words, "--snapshot").value_or(""),
          .askModel = contains(words, "--ai"),
          .live = contains(words, "--live"),
          .dark = contains(words, "--dark"),
          .open = contains(words, "--open"),
          .exercise = contains(words, "--exercise"),
          .prTitles = contains(words, "--pr")};
}

}  // namespace tarnwick
