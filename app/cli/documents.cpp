#include "app/cli/documents.h"

#include "app/cli/help.h"
#include "app/cli/options.h"

namespace tarnwick {
namespace {

// A text with a backslash before each of those characters.
std::string escaped(std::string_view text, std::string_view characters) {
  std::string safe;
  for (const char c : text) {
    if (characters.find(c) != std::string_view::npos) safe += '\\';
    safe += c;
  }
  return safe;
}

// The text as one word of a POSIX shell.
std::string shellQuoted(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) {
    if (c == '\'') {
      quoted += "'\\''";
    } else {
      quoted += c;
    }
  }
  return quoted + "'";
}

// A hyphen that stays one in what is printed: it may be copied into a shell.
std::string roff(std::string_view text) { return escaped(text, "-"); }

std::string joined(std::span<const std::string_view> words) {
  std::string text;
  for (const std::string_view word : words) text.append(text.empty() ? "" : " ").append(word);
  return text;
}

std::string manualEntry(const Option& option) {
  std::string entry = ".TP\n";
  if (!option.shortForm.empty()) entry += "\\fB" + roff(option.shortForm) + "\\fR, ";
  entry += "\\fB" + roff(option.word) + "\\fR";
  if (option.value != OptionValue::none) entry.append(" \\fI").append(valueName(option)).append("\\fR");
  std::string text = fullDescription(option);
  text.front() = static_cast<char>(text.front() - 'a' + 'A');
  return entry + "\n" + paragraph("", 0, roff(text) + ".");
}

// The options that start something, or those that change it.
std::string manualEntries(bool starting) {
  std::string entries;
  for (const Option& option : options())
    if (option.mode.has_value() == starting) entries += manualEntry(option);
  return entries;
}

constexpr std::string_view manualOpening =
    ".SH NAME\n"
    "tarnwick \\- tells why this machine is slow right now\n"
    ".SH SYNOPSIS\n"
    ".B tarnwick\n"
    ".RI [ words ]\n"
    ".SH DESCRIPTION\n"
    "One check looks at every process of yours with its command line, memory,\n"
    "processor share, folder and listening ports, and at memory pressure, swap,\n"
    "heat, disk space, processor load, containers and running applications.\n"
    "Eleven rules look at the sample and say what slows the machine, why, and what\n"
    "to do about it.\n"
    ".PP\n"
    "Without a word that starts something the application starts in the menu bar or\n"
    "tray.\n"
    "It needs the panel, which may be a package of its own.\n"
    ".PP\n"
    "A line end inside a name becomes a blank.\n"
    "Other control characters in names and command lines are shown as signs on a\n"
    "terminal and passed on unchanged into a pipe.\n"
    ".SH OPTIONS\n"
    "Words are matched whole, and a value is the word right after its option.\n"
    "Of several words that start something, one decides, in this order:\n";

constexpr std::string_view manualClosing =
    ".SH EXIT STATUS\n"
    "1 for an unknown scenario, for a text that cannot be written, for an\n"
    "application that cannot start, for words that cannot be carried out, for a\n"
    "remedy that is not there or was not carried out and for a document that was not\n"
    "written whole; 3 with \\-\\-exit\\-code when something slows the machine down; 0\n"
    "for everything else.\n"
    "A picture that cannot be drawn is no failure either.\n"
    ".SH EXAMPLES\n"
    ".TP\n"
    ".B tarnwick \\-\\-print\n"
    "What slows this machine, on the terminal.\n"
    ".TP\n"
    ".B tarnwick \\-\\-top 5\n"
    "Who uses most of it, whether or not that is a cause.\n"
    ".TP\n"
    ".B tarnwick \\-\\-snapshot panel.png \\-\\-live \\-\\-dark\n"
    "The same as a picture.\n"
    ".TP\n"
    ".B tarnwick \\-\\-fix\n"
    "The same with numbers, of which one can be chosen and carried out.\n"
    ".SH SEE ALSO\n"
    ".BR ps (1),\n"
    ".BR top (1),\n"
    ".BR git (1)\n";

// The words in the order in which the modes are looked at.
std::string wordsInOrder() {
  std::string words;
  for (int mode = 0; mode < static_cast<int>(Mode::application); ++mode)
    for (const Option& option : options())
      if (option.mode == static_cast<Mode>(mode))
        words.append(words.empty() ? "" : ", ").append(roff(option.word));
  return words;
}

// What bash does behind a word that takes a value.
std::string bashCase(const Option& option) {
  std::string words(option.word);
  if (option.value == OptionValue::name)
    return "    " + words + ") COMPREPLY=($(compgen -W " + shellQuoted(joined(option.choices)) +
           " -- \"$word\")); return ;;\n";
  // Older ones cannot be told to complete files just here.
  if (option.value == OptionValue::path)
    return "    " + words + ") compopt -o default 2>/dev/null; return ;;\n";
  return "    " + words + ") return ;;\n";
}

constexpr std::string_view madeFrom =
    "completion for tarnwick, made from the program's own table of words.\n";

}  // namespace

std::string manualPage(std::string_view released) {
  std::string version = versionText();
  version.pop_back();
  std::string page = ".TH TARNWICK 1 " + std::string(released) + " \"" + version + "\" \"User Commands\"\n";
  page.append(manualOpening).append(paragraph("", 0, wordsInOrder() + "."));
  page += manualEntries(true);
  page += ".PP\nThe others change what those do:\n" + manualEntries(false);
  page.append(".SH ENVIRONMENT\n.TP\n.B ").append(noTools.name).append("\n");
  std::string description(noTools.description);
  description.front() = 'W';
  page += paragraph("", 0, roff(description) + ".");
  return page.append(manualClosing);
}

std::string bashCompletion() {
  std::string cases;
  std::string words;
  for (const Option& option : options()) {
    if (option.value != OptionValue::none && !option.valueIsOptional) cases += bashCase(option);
    words.append(words.empty() ? "" : " ").append(option.word);
    if (!option.shortForm.empty()) words.append(" ").append(option.shortForm);
  }
  return "# bash " + std::string(madeFrom) +
         "_tarnwick() {\n"
         "  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}\n"
         "  COMPREPLY=()\n"
         "  case $before in\n" +
         cases +
         "  esac\n"
         "  COMPREPLY=($(compgen -W " +
         shellQuoted(words) +
         " -- \"$word\"))\n"
         "}\n"
         "complete -F _tarnwick tarnwick\n";
}

// An argument of _arguments: the word, both forms of it where it has two, and what it is.
std::string zshSpec(const Option& option, const std::string& what) {
  const std::string word(option.word);
  if (option.shortForm.empty()) return shellQuoted(word + what);
  // The two forms exclude each other.
  const std::string shortForm(option.shortForm);
  return shellQuoted("(" + shortForm + " " + word + ")") + "{" + shortForm + "," + word + "}" +
         shellQuoted(what);
}

std::string zshCompletion() {
  std::string specs;
  for (const Option& option : options()) {
    std::string what = "[" + escaped(fullDescription(option), "[]\\") + "]";
    if (option.value == OptionValue::name) what += ":name:(" + joined(option.choices) + ")";
    if (option.value == OptionValue::path) what += ":path:_files";
    if (option.value == OptionValue::text) what += ":text: ";
    if (option.valueIsOptional) what += "::value: ";
    specs.append(" \\\n  ").append(zshSpec(option, what));
  }
  return "#compdef tarnwick\n# zsh " + std::string(madeFrom) + "_arguments" + specs + "\n";
}

std::string fishCompletion() {
  std::string text = "# fish " + std::string(madeFrom) + "complete -c tarnwick -f\n";
  for (const Option& option : options()) {
    text += "complete -c tarnwick";
    if (!option.shortForm.empty()) text.append(" -s ").append(option.shortForm.substr(1));
    text.append(" -l ").append(option.word.substr(2));
    if (option.value == OptionValue::name) text += " -x -a '" + joined(option.choices) + "'";
    if (option.value == OptionValue::path) text += " -r -F";
    if (option.value == OptionValue::text) text += " -x";
    text += " -d '" + escaped(fullDescription(option), "'\\") + "'\n";
  }
  return text;
}

}  // namespace tarnwick
