#include "diagnosis/attribution.h"

#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "records/formatted.h"
#include "records/utf8.h"
#include "records/wording.h"

namespace tarnwick {
namespace {

constexpr std::size_t shownCommandLength = 60;  // characters

constexpr std::int32_t askToEnd = 15;
constexpr std::int32_t forceToEnd = 9;

constexpr std::array<std::string_view, 6> scriptSuffixes{".py", ".js", ".mjs", ".ts", ".rb", ".sh"};

// White space beyond ASCII, as Unicode names it.
constexpr std::array<std::string_view, 19> wideSpaces{
    "\u0085", "\u00A0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006",
    "\u2007", "\u2008", "\u2009", "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000"};

// The number of bytes of the white space that `text` begins with; 0 when it begins with something else.
std::size_t spaceLength(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  if (first < 0x80) return first == ' ' || (first >= '\t' && first <= '\r') ? 1 : 0;
  for (const std::string_view space : wideSpaces) {
    if (text.starts_with(space)) return space.size();
  }
  return 0;
}

// Appends the words of `text` to `line`, each after one blank unless the line is empty.
void appendWords(std::string& line, std::string_view text) {
  bool between = true;
  while (!text.empty()) {
    if (const std::size_t space = spaceLength(text); space > 0) {
      between = true;
      text.remove_prefix(space);
      continue;
    }
    if (between && !line.empty()) line += ' ';
    between = false;
    line += text.front();
    text.remove_prefix(1);
  }
}

std::string pullRequest(const ClaudeWork& work, Surroundings& surroundings) {
  if (!work.pr) return {};
  const std::string number = std::to_string(*work.pr);
  if (const auto title = surroundings.prTitle(work.prRepo, number)) {
    return formatted(", for the pull request “{}”", *title);
  }
  return formatted(" (pull request #{})", number);
}

}  // namespace

std::string startedBy(const Starter& start, double age, const std::optional<ClaudeWork>& work,
                      Surroundings& surroundings) {
  const std::string when = ago(age) + " ago";
  if (!start.who) return formatted("It started {}. The app or terminal that started it is closed.", when);
  if (*start.who == "you") return formatted("You started it in a terminal {}.", when);
  if (*start.who != "Claude Code") return formatted("{} started it {}.", *start.who, when);
  const std::string session =
      work && work->title ? formatted(", in a session about “{}”", *work->title) : std::string();
  const std::string request = work ? pullRequest(*work, surroundings) : std::string();
  return formatted("Claude Code started it {}{}{}.", when, session, request);
}

std::string facts(const std::optional<std::string>& who, const std::optional<Git>& git,
                  const std::optional<ClaudeWork>& work, std::vector<std::string> more) {
  if (who) more.push_back("Started by: " + *who);
  if (work && work->title) more.push_back("Claude Code session title: " + *work->title);
  if (git) {
    more.push_back(formatted("Git repo {}, branch {}{}.{}", git->repo, git->branch,
                             git->isCopy ? " (a separate copy of the repo)" : "",
                             git->lastCommit.empty() ? "" : " Last commit: " + git->lastCommit));
  }
  return formatted("{}", fmt::join(more, "\n"));
}

std::string commandLine(const Proc& proc) {
  std::string line;
  appendWords(line, proc.name());
  for (std::size_t i = 1; i < proc.args.size(); ++i) appendWords(line, proc.args[i]);
  return line;
}

std::string shortenedCommand(const std::string& command) {
  if (characterCount(command) <= shownCommandLength) return command;
  return firstCharacters(command, shownCommandLength - 1) + "…";
}

bool isInLibrary(const std::string& path, const Self& self) {
  return path.starts_with(self.home) &&
         std::string_view(path).substr(self.home.size()).starts_with("/Library/");
}

std::string projectRoot(const std::string& path, Surroundings& surroundings) {
  const Self& self = surroundings.self();
  if (isInLibrary(path, self)) return path;
  const std::size_t homeLength = characterCount(self.home);
  std::string folder = path;
  std::size_t length = characterCount(folder);  // kept up to date: a path may be thousands of folders deep
  while (length > homeLength && surroundings.hasTime()) {
    if (surroundings.exists(folder + "/.git")) return folder;
    const std::size_t slash = std::min(folder.rfind('/'), folder.size());
    const std::size_t end = slash == folder.size() ? 0 : slash;
    length -= characterCount(std::string_view(folder).substr(end));
    folder.resize(end);
  }
  return path;
}

Signal stopSignal(const Proc& proc, const std::set<Pid>& termed) {
  return {proc.pid, termed.contains(proc.pid) ? forceToEnd : askToEnd, proc.started};
}

Action stop(const Proc& proc, const std::set<Pid>& termed, std::string label) {
  const Signal signal = stopSignal(proc, termed);
  return {signal.number == forceToEnd ? "Force quit" : std::move(label), {signal}};
}

std::optional<std::string> scriptHead(const Proc& proc, Surroundings& surroundings) {
  const Self& self = surroundings.self();
  if (isInLibrary(proc.cwd, self) || proc.args.size() < 2) return std::nullopt;
  const auto isScript = [](const std::string& arg) {
    return !arg.starts_with('-') && std::any_of(scriptSuffixes.begin(), scriptSuffixes.end(),
                                                [&](std::string_view end) { return arg.ends_with(end); });
  };
  const auto script = std::find_if(proc.args.begin() + 1, proc.args.end(), isScript);
  if (script == proc.args.end() || isInLibrary(*script, self)) return std::nullopt;
  const auto head = surroundings.fileHead(script->starts_with('/') ? *script : proc.cwd + "/" + *script);
  if (!head) return std::nullopt;
  return formatted("The file {} starts with:\n{}", *script, *head);
}

}  // namespace tarnwick
