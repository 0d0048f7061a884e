#include "sampling/decode/launch_command.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <utility>

#include "records/shells.h"
#include "records/snapshot.h"
#include "records/text.h"

namespace tarnwick {
namespace {

using Words = std::vector<std::string>;

constexpr std::size_t longestChain = 8;  // launchers in front of launchers

// They run the command behind their options; "env" also sets variables for it.
constexpr std::array<std::string_view, 12> launchers{"env",      "exec",   "nice",        "ionice",
                                                     "nohup",    "setsid", "prime-run",   "cautious-launcher",
                                                     "firejail", "pkexec", "gamemoderun", "dbus-run-session"};

constexpr std::array<std::string_view, 18> runtimes{
    "python", "pypy", "java", "javaw", "node",   "nodejs", "deno", "bun",      "ruby",
    "perl",   "php",  "lua",  "mono",  "dotnet", "wine",   "gjs",  "electron", "wine-preloader"};

bool isAssignment(std::string_view word) {
  const auto equals = word.find('=');
  return equals != 0 && equals != std::string_view::npos &&
         word.substr(0, equals).find('/') == std::string_view::npos;
}

// Drops the launcher, its options and the variables that it sets.
void dropLauncher(Words& words) {
  auto next = words.begin() + 1;
  while (next != words.end() && (next->starts_with('-') || isAssignment(*next))) {
    const bool takesValue = *next == "-a" || *next == "-u" || *next == "-n" || *next == "-c";
    ++next;
    if (takesValue && next != words.end()) ++next;
  }
  words.erase(words.begin(), next);
}

std::string wordAfterOptions(const Words& words, std::size_t from) {
  const auto word = std::find_if(words.begin() + static_cast<std::ptrdiff_t>(std::min(from, words.size())),
                                 words.end(), [](const std::string& w) { return !w.starts_with('-'); });
  return word == words.end() ? std::string() : *word;
}

std::string snapOf(std::string_view program) {
  for (const std::string_view folder : {"/snap/bin/", "/var/lib/snapd/snap/bin/"}) {
    if (!program.starts_with(folder)) continue;
    program.remove_prefix(folder.size());
    return std::string(program.substr(0, program.find('.')));
  }
  return {};
}

// The words of one line of a shell script with everything filled in that is known.
class ScriptLine {
 public:
  using Variables = std::map<std::string, std::string, std::less<>>;

  ScriptLine(std::string_view line, const Variables& variables) : rest_(line), variables_(variables) {}

  // Absent when a word needs what is not known.
  std::optional<Words> words() {
    Words found;
    while (true) {
      while (!rest_.empty() && (rest_.front() == ' ' || rest_.front() == '\t')) rest_.remove_prefix(1);
      if (rest_.empty() || rest_.front() == '#' || rest_.front() == ';' || rest_.front() == '&' ||
          rest_.front() == '|')
        return found;
      auto word = takeScriptWord();
      if (!word) return std::nullopt;
      found.push_back(std::move(*word));
    }
  }

 private:
  std::optional<std::string> takeScriptWord() {
    std::string word;
    char quote = 0;
    while (!rest_.empty()) {
      const char c = rest_.front();
      if (quote == 0 && (c == ' ' || c == '\t' || c == ';' || c == '&' || c == '|')) break;
      if (c == quote || (quote == 0 && (c == '"' || c == '\''))) {
        quote = quote == 0 ? c : '\0';
        rest_.remove_prefix(1);
      } else if (quote != '\'' && (c == '$' || c == '`')) {
        const auto value = takeValue();
        if (!value) return std::nullopt;
        word += *value;
      } else {
        if (c == '\\' && quote != '\'' && rest_.size() > 1) rest_.remove_prefix(1);
        word += rest_.front();
        rest_.remove_prefix(1);
      }
    }
    return word;
  }

  // The text between here and `end`, which is taken too.
  std::string_view takeUntil(std::size_t end) {
    const std::string_view inside = rest_.substr(0, end);
    rest_.remove_prefix(std::min(rest_.size(), end == std::string_view::npos ? rest_.size() : end + 1));
    return inside;
  }

  std::optional<std::string> takeValue() {
    if (rest_.front() == '`') {
      rest_.remove_prefix(1);
      return outputOf(takeUntil(rest_.find('`')));
    }
    rest_.remove_prefix(1);
    if (rest_.starts_with('(')) {
      rest_.remove_prefix(1);
      int depth = 1;
      std::size_t end = 0;
      for (; end < rest_.size(); ++end) {
        if (rest_[end] == '(') ++depth;
        if (rest_[end] == ')' && --depth == 0) break;
      }
      return outputOf(takeUntil(end));
    }
    if (rest_.starts_with('{')) {
      rest_.remove_prefix(1);
      const std::string_view inside = takeUntil(rest_.find('}'));
      return variable(inside.substr(0, inside.find_first_of(":-[#%/")));
    }
    std::size_t length = 0;
    while (length < rest_.size() &&
           (std::isalnum(static_cast<unsigned char>(rest_[length])) != 0 || rest_[length] == '_'))
      ++length;
    if (length == 0) length = std::min<std::size_t>(1, rest_.size());
    const std::string_view name = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return variable(name);
  }

  std::optional<std::string> variable(std::string_view name) const {
    if (name == "@" || name == "*") return "$@";
    const auto known = variables_.find(name);
    return known == variables_.end() ? std::nullopt : std::optional(known->second);
  }

  // What the few commands print that scripts find their own place with.
  std::optional<std::string> outputOf(std::string_view command) const {
    const auto words = ScriptLine(command, variables_).words();
    if (!words || words->size() < 2) return std::nullopt;
    const std::string& name = words->front();
    const std::string argument = wordAfterOptions(*words, 1);
    if (name == "readlink" || name == "realpath" || name == "cd") return argument;
    if (name != "dirname") return std::nullopt;
    return argument.substr(0, std::max<std::size_t>(argument.rfind('/'), 1));
  }

  std::string_view rest_;
  const Variables& variables_;
};

// Keeps the variable that the line sets, if it does only that.
bool keepsVariable(std::string_view line, ScriptLine::Variables& variables) {
  if (line.starts_with("export ")) line.remove_prefix(7);
  const auto equals = line.find('=');
  if (equals == 0 || equals == std::string_view::npos ||
      line.substr(0, equals).find_first_of(" \t\"'$[(/") != std::string_view::npos)
    return false;
  const auto words = ScriptLine(line.substr(equals + 1), variables).words();
  if (words && words->size() > 1) return false;
  std::string name(line.substr(0, equals));
  if (!words) {
    variables.erase(name);
  } else {
    variables[std::move(name)] = words->empty() ? std::string() : words->front();
  }
  return true;
}

}  // namespace

std::vector<std::string> commandWords(std::string_view command) {
  Words words;
  std::string word;
  bool started = false;
  char quote = 0;
  const auto finish = [&] {
    const bool fileCode = word.size() == 2 && word.front() == '%' && word != "%%";
    if (started && !fileCode) words.push_back(word);
    word.clear();
    started = false;
  };
  for (std::size_t at = 0; at < command.size(); ++at) {
    const char c = command[at];
    if (c == quote || (quote == 0 && (c == '"' || c == '\''))) {
      quote = quote == 0 ? c : '\0';
      started = true;
    } else if (quote == 0 && (c == ' ' || c == '\t')) {
      finish();
    } else {
      if (c == '\\' && quote != '\'' && at + 1 < command.size()) ++at;
      word += command[at];
      started = true;
    }
  }
  finish();
  return words;
}

Launch launchOf(std::vector<std::string> words) {
  for (std::size_t step = 0; step < longestChain && !words.empty(); ++step) {
    const std::string_view name = lastPathComponent(words.front());
    if (const std::string snap = snapOf(words.front()); !snap.empty()) return {.snap = snap};
    if (name == "snap" && words.size() > 1 && words[1] == "run") return {.snap = wordAfterOptions(words, 2)};
    if (name == "flatpak" && words.size() > 1 && words[1] == "run")
      return {.flatpak = wordAfterOptions(words, 2)};
    if (isShell(name) && words.size() > 1) {
      words = words[1].ends_with('c') && words[1].starts_with('-') && words.size() > 2
                  ? commandWords(words[2])
                  : Words(words.begin() + 1, words.end());
    } else if (std::ranges::find(launchers, name) != launchers.end()) {
      dropLauncher(words);
    } else if (isAssignment(words.front())) {
      words.erase(words.begin());
    } else {
      return {.program = words.front()};
    }
  }
  return {};
}

bool isSharedRuntime(std::string_view fileName) {
  // A version may follow: python3.11, electron28, wine64.
  const auto last = fileName.find_last_not_of("0123456789.");
  const std::string_view plain = fileName.substr(0, last == std::string_view::npos ? 0 : last + 1);
  const auto matches = [&](std::string_view word) { return plain == word || fileName == word; };
  return std::ranges::any_of(runtimes, matches) || isInteractiveShell(fileName);
}

std::vector<std::string> programsOfScript(std::string_view text, const std::string& path) {
  ScriptLine::Variables variables{{"0", path}, {"BASH_SOURCE", path}};
  Words programs;
  while (!text.empty()) {
    const std::string_view line = trimmed(takeLine(text));
    if (line.empty() || line.starts_with('#') || keepsVariable(line, variables)) continue;
    if (!line.starts_with("exec ") && line.find("$@") == std::string_view::npos) continue;
    const auto words = ScriptLine(line, variables).words();
    if (!words) continue;
    std::string program = launchOf(*words).program;
    if (!program.empty() && program != "$@") programs.push_back(std::move(program));
  }
  return programs;
}

}  // namespace tarnwick
