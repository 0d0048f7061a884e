#include "app/cli/command_line.h"

#include <algorithm>

#include "app/cli/options.h"
#include "app/cli/terminal_text.h"
#include "records/formatted.h"
#include "records/text.h"

namespace tarnwick {
namespace {

using Words = std::vector<std::string>;

// The first place where the option stands, in whichever form.
Words::const_iterator find(const Words& words, const Option& option) {
  return std::ranges::find_if(words, [&](const std::string& word) { return isForm(option, word); });
}

// Takes over what one option asks for. One that lacks its value asks for nothing.
void apply(const Option& option, const Words& words, CommandLine& line) {
  const auto found = find(words, option);
  if (found == words.end()) return;
  const auto next = std::next(found);
  const bool hasValue = next != words.end() && isValue(option, *next);
  if (!hasValue && option.value != OptionValue::none && !option.valueIsOptional) return;
  if (option.mode) line.mode = std::min(line.mode, *option.mode);
  if (option.flag != nullptr) line.*option.flag = true;
  if (option.text != nullptr && hasValue) line.*option.text = *next;
}

// The words that no option accounts for. What stands behind an option that takes a value was meant as one,
// even where an earlier value counts.
Words unknownWords(const Words& words) {
  Words unknown;
  const Option* before = nullptr;
  for (const std::string& word : words) {
    const Option* option = optionOf(word);
    const bool belongs = before != nullptr && isValue(*before, word);
    if (option == nullptr && !belongs) unknown.push_back(word);
    before = option;
  }
  return unknown;
}

}  // namespace

CommandLine parseCommandLine(const std::vector<std::string>& words) {
  CommandLine line;
  for (const Option& option : options()) apply(option, words, line);
  if (line.json && line.mode == Mode::application) line.mode = Mode::print;
  line.unknown = unknownWords(words);
  return line;
}

std::optional<std::size_t> rowsOf(const CommandLine& line) {
  if (!line.topRows) return usualRows;
  const auto rows = wholeNumber<std::size_t>(*line.topRows);
  return rows && *rows >= 1 && *rows <= mostRows ? rows : std::nullopt;
}

std::optional<std::string> wrongWords(const CommandLine& line) {
  if (line.top && !rowsOf(line)) {
    return formatted("“{}” is no number of rows for --top. Use 1 to {}.", harmlessInLine(*line.topRows),
                     mostRows);
  }
  const bool prints = line.mode == Mode::print || line.mode == Mode::demo || line.mode == Mode::top ||
                      line.mode == Mode::watch;
  if (line.json && !prints) return "--json goes with --print, --demo, --top or --watch, or stands alone.";
  return std::nullopt;
}

}  // namespace tarnwick
