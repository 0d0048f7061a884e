#include "app/cli/help.h"

#include <algorithm>

#include "records/wording.h"

namespace tarnwick {
namespace {

constexpr std::size_t lineLength = 80;

// "  -h, --help" and "      --scenario NAME": long forms stand below one another.
std::string formsOf(const Option& option) {
  std::string forms = option.shortForm.empty() ? "      " : "  " + std::string(option.shortForm) + ", ";
  forms += option.word;
  if (option.value != OptionValue::none) forms.append(" ").append(valueName(option));
  return forms;
}

}  // namespace

std::string paragraph(std::string head, std::size_t column, std::string_view text) {
  head.resize(std::max(column, head.size()), ' ');
  std::string lines;
  while (head.size() + text.size() > lineLength) {
    const std::size_t room = lineLength - head.size();
    const std::size_t blank = text.rfind(' ', room);
    if (blank == std::string_view::npos) break;
    lines.append(head).append(text.substr(0, blank)).append("\n");
    text.remove_prefix(blank + 1);
    head.assign(column, ' ');
  }
  return lines.append(head).append(text).append("\n");
}

std::string fullDescription(const Option& option) {
  std::string text;
  if (!option.with.empty()) text.append("with ").append(option.with).append(": ");
  text += option.description;
  if (!option.choices.empty()) text.append(": ").append(choicesOf(option));
  return text;
}

std::string helpText() {
  std::size_t column = 0;
  for (const Option& option : options()) column = std::max(column, formsOf(option).size() + 2);

  std::string text =
      "Tarnwick tells why this machine is slow right now.\n"
      "\n"
      "Usage: tarnwick [words]\n"
      "\n";
  bool starts = true;
  for (const Option& option : options()) {
    if (starts && !option.mode) text += "\n";
    starts = option.mode.has_value();
    text += paragraph(formsOf(option), column, fullDescription(option));
  }
  text += "\nWithout a word that starts something the application starts in the menu bar.\n";
  return text + paragraph(std::string(noTools.name) + ":", 0, " " + std::string(noTools.description) + ".");
}

std::string versionText() { return "tarnwick " TARNWICK_VERSION "\n"; }

std::string_view programVersion() { return TARNWICK_VERSION; }

std::string unknownWordsText(const std::vector<std::string>& words) {
  std::vector<std::string> quoted;
  for (const std::string& word : words) quoted.push_back("“" + word + "”");
  return list(quoted) + (words.size() == 1 ? " is no option." : " are no options.") + " See tarnwick --help.";
}

}  // namespace tarnwick
