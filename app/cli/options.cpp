#include "app/cli/options.h"

#include <algorithm>
#include <array>

namespace tarnwick {
namespace {

constexpr std::array<std::string_view, 3> scenarios{"memory", "calm", "developer"};

constexpr std::array table{
    Option{.word = "--print", .description = "check this machine and print the report", .mode = Mode::print},
    Option{.word = "--demo", .description = "print the report of an invented machine", .mode = Mode::demo},
    Option{.word = "--top",
           .value = OptionValue::count,
           .valueIsOptional = true,
           .description = "list the 10 biggest users of memory and of the processor, or so many",
           .mode = Mode::top,
           .flag = &CommandLine::top,
           .text = &CommandLine::topRows},
    Option{.word = "--snapshot",
           .value = OptionValue::path,
           .description = "draw the panel of the invented machine into a PNG file",
           .mode = Mode::snapshot,
           .text = &CommandLine::imagePath},
    Option{.word = "--explain",
           .value = OptionValue::text,
           .description = "ask the on-device language model what a process does, given facts about it",
           .mode = Mode::explain,
           .text = &CommandLine::evidence},
    Option{
        .word = "--bench", .description = "measure what a check costs, phase by phase", .mode = Mode::bench},
    Option{.word = "--selftest",
           .description = "check the rules against the invented machine",
           .mode = Mode::selfTest},
    Option{.word = "--fix",
           .value = OptionValue::command,
           .valueIsOptional = true,
           .description = "carry out a remedy, chosen on the terminal or named by its command",
           .mode = Mode::fix,
           .text = &CommandLine::fixCommand},
    Option{.word = "--watch",
           .value = OptionValue::seconds,
           .valueIsOptional = true,
           .description = "check every 60 seconds, or at another pace, and print what changes",
           .mode = Mode::watch,
           .text = &CommandLine::watchSeconds},
    Option{.word = "--help",
           .shortForm = "-h",
           .description = "print a summary of these words",
           .mode = Mode::help},
    Option{.word = "--version", .shortForm = "-V", .description = "print the version", .mode = Mode::version},
    Option{.word = "--ai",
           .with = "--print",
           .description = "add the on-device language model's guesses where it has any",
           .flag = &CommandLine::askModel},
    Option{.word = "--json",
           .with = "--print, --demo, --top, --watch or alone",
           .description = "print one JSON document instead of text",
           .flag = &CommandLine::json},
    Option{.word = "--scenario",
           .value = OptionValue::name,
           .choices = scenarios,
           .with = "--demo, --print, --top or --snapshot",
           .description = "choose the invented machine",
           .text = &CommandLine::scenario},
    Option{.word = "--exit-code",
           .with = "--print, --json or --demo",
           .description = "end with status 3 when something slows the machine down",
           .flag = &CommandLine::exitCode},
    Option{.word = "--yes",
           .with = "--fix and a command",
           .description = "ask no question",
           .flag = &CommandLine::yes},
    Option{.word = "--dry-run",
           .with = "--fix",
           .description = "say what would be done, and do nothing",
           .flag = &CommandLine::dryRun},
    Option{.word = "--live",
           .with = "--snapshot",
           .description = "draw this machine instead of an invented one",
           .flag = &CommandLine::live},
    Option{.word = "--dark",
           .with = "--snapshot",
           .description = "draw in the dark appearance",
           .flag = &CommandLine::dark},
    Option{.word = "--open",
           .with = "--snapshot",
           .description = "draw with the first card and the leftovers open",
           .flag = &CommandLine::open},
    Option{.word = "--pr",
           .with = "--print, --fix, --watch, --live or the application",
           .description = "look up pull-request titles (asks the code host over the network, through gh)",
           .flag = &CommandLine::prTitles},
    Option{.word = "--exercise",
           .with = "the application",
           .description = "open and close the panel on a timed script",
           .flag = &CommandLine::exercise},
};

}  // namespace

std::span<const Option> options() { return table; }

bool isForm(const Option& option, std::string_view word) {
  return word == option.word || (!option.shortForm.empty() && word == option.shortForm);
}

const Option* optionOf(std::string_view word) {
  const auto found = std::ranges::find_if(table, [&](const Option& option) { return isForm(option, word); });
  return found == table.end() ? nullptr : &*found;
}

std::string valueName(const Option& option) {
  constexpr std::array<std::string_view, 7> names{"", "NAME", "PATH", "TEXT", "COMMAND", "SECONDS", "N"};
  const std::string name(names.at(static_cast<std::size_t>(option.value)));
  return option.valueIsOptional ? "[" + name + "]" : name;
}

bool isValue(const Option& option, std::string_view word) {
  if (option.value == OptionValue::none) return false;
  return !option.valueIsOptional || (!word.starts_with("--") && optionOf(word) == nullptr);
}

std::string choicesOf(const Option& option) {
  std::string text;
  for (std::size_t i = 0; i < option.choices.size(); ++i) {
    if (i > 0) text += i + 1 == option.choices.size() ? " or " : ", ";
    text += option.choices[i];
  }
  return text;
}

}  // namespace tarnwick
