// The one table of the words that the program knows. The parser, --help, the manual page and the completions
// of the shells are all made from it, so that none can say what another does not.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "app/cli/command_line.h"

namespace tarnwick {

// What the very next word is to an option.
enum class OptionValue {
  none,     // a word like any other
  name,     // one of Option::choices
  path,     // a file
  text,     // anything
  command,  // that of a remedy
  seconds,
  count,  // of rows
};

struct Option {
  std::string_view word;       // whole, with its dashes
  std::string_view shortForm;  // the same in one letter, with its dash; empty: there is none
  OptionValue value = OptionValue::none;
  bool valueIsOptional = false;  // then a word that begins with two dashes, or is an option, is none
  std::span<const std::string_view> choices;  // for a name: what may be said
  std::string_view with;              // what it goes with, as a list for readers; empty: it stands alone
  std::string_view description;       // in ASCII, without a full stop
  std::optional<Mode> mode;           // what it starts; absent: it only changes what another word starts
  bool CommandLine::*flag = nullptr;  // what it switches on
  std::optional<std::string> CommandLine::*text = nullptr;  // where its value goes
};

// In the order in which a reader wants them: what starts something, then what changes it.
std::span<const Option> options();

// Is that word the option, in whichever form?
bool isForm(const Option& option, std::string_view word);

// The option of that word; null when there is none.
const Option* optionOf(std::string_view word);

// "NAME" for a name, "[SECONDS]" where it may be left out; empty for none.
std::string valueName(const Option& option);

// Is that word, right behind the option, its value?
bool isValue(const Option& option, std::string_view word);

// "memory, calm or developer"; empty for an option without choices.
std::string choicesOf(const Option& option);

// What the environment may say: one variable.
struct EnvironmentVariable {
  std::string_view name;
  std::string_view description;  // in ASCII, without a full stop
};
inline constexpr EnvironmentVariable noTools{
    "TARNWICK_NO_TOOLS", "when it is set, to whatever, no outside tool (git, gh, simctl) is run"};

}  // namespace tarnwick
